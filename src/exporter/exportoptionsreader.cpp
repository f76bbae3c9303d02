#include "exporter/exportoptionsreader.h"

#include "tools/program.h"

#include <QCommandLineParser>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int maxNeedleAngle = 36000; // 100 turns

/// The values of an option that may be repeated and takes several values separated by commas.
QStringList listOf(const QStringList &values)
{
    QStringList parts;
    for (const QString &value : values) {
        for (const QString &part : value.split(QLatin1Char(',')))
            parts.append(part.trimmed());
    }
    return parts;
}

template <typename Value>
void appendOnce(QList<Value> &list, const Value &value)
{
    if (!list.contains(value))
        list.append(value);
}

} // namespace

ExportOptionsReader::ExportOptionsReader(const QCommandLineParser &parser,
                                         const OptionDefinitions &definitions)
    : OptionsReader(parser)
    , m_definitions(definitions)
{
    readFormats();
    readDimensions();
    readNameTemplate();
    readNeedles();
    readBackground();
    readFiles();
    readOutputFile();
    readStandardInput();
    readOtherOptions();
}

void ExportOptionsReader::addFormat(const QString &name)
{
    const ExportFormat *format = findExportFormat(name);
    if (format == nullptr)
        refuse(QStringLiteral("\"%1\" is not a format; it must be %2").arg(name, exportFormatNames()));
    else if (format->missing != nullptr && !format->missing().isEmpty())
        refuse(format->missing());
    else
        appendOnce(m_options.formats, format);
}

void ExportOptionsReader::readFormats()
{
    const QString suffix = QFileInfo(valueOf(m_definitions.to)).suffix().toLower();
    if (!isSet(m_definitions.formats) && suffix.isEmpty())
        return;
    m_options.formats.clear();
    const QStringList names =
        isSet(m_definitions.formats) ? listOf(valuesOf(m_definitions.formats)) : QStringList{suffix};
    for (const QString &name : names)
        addFormat(name);
}

void ExportOptionsReader::checkSize(double size)
{
    if (size < OptionDefinitions::minSize || size > OptionDefinitions::maxSize)
        refuse(QStringLiteral("the size must be from %1 to %2 pixels")
                   .arg(OptionDefinitions::minSize)
                   .arg(OptionDefinitions::maxSize));
}

void ExportOptionsReader::readSizes()
{
    if (!isSet(m_definitions.size))
        return;
    m_options.sizes.clear();
    for (const QString &text : listOf(valuesOf(m_definitions.size))) {
        bool isNumber = false;
        const int size = text.toInt(&isNumber);
        if (!isNumber)
            refuse(QStringLiteral("\"%1\" is not a size; it must be a whole number of pixels").arg(text));
        checkSize(size);
        appendOnce(m_options.sizes, size);
    }
}

double ExportOptionsReader::readLength(const QCommandLineOption &option)
{
    if (!isSet(option))
        return 0.0;
    bool isNumber = false;
    const double length = valueOf(option).toDouble(&isNumber);
    if (!isNumber || !(length > 0.0) || !std::isfinite(length))
        refuseValue(option, QStringLiteral("a number above 0"));
    return length;
}

void ExportOptionsReader::readDimensions()
{
    readSizes();
    m_options.millimetres = readLength(m_definitions.mm);
    m_options.dotsPerInch = readLength(m_definitions.dpi);

    if (isSet(m_definitions.mm) && isSet(m_definitions.dpi)) {
        if (isSet(m_definitions.size))
            refuse(QStringLiteral("--mm and --dpi together give the size; --size cannot be given too"));
        const double size = std::round(m_options.millimetres / millimetresPerInch * m_options.dotsPerInch);
        checkSize(size);
        m_options.sizes = {static_cast<int>(
            std::clamp<double>(size, OptionDefinitions::minSize, OptionDefinitions::maxSize))};
    }
    for (const ExportFormat *format : std::as_const(m_options.formats)) {
        if (format->isPicture && std::ranges::max(m_options.sizes) > format->maxSize)
            refuse(QStringLiteral("a %1 has at most %2 pixels on each side")
                       .arg(QLatin1String(format->name))
                       .arg(format->maxSize));
    }
    for (const int size : std::as_const(m_options.sizes)) {
        const double side = m_options.printedSize(size);
        if (side != 0.0 && (side < OptionDefinitions::minSide || side > OptionDefinitions::maxSide)) {
            refuse(QStringLiteral("the printed size must be from %1 to %2 mm")
                       .arg(OptionDefinitions::minSide)
                       .arg(OptionDefinitions::maxSide));
        }
    }
}

void ExportOptionsReader::readNameTemplate()
{
    if (!isSet(m_definitions.nameTemplate)) {
        if (m_options.sizes.size() > 1)
            m_options.pictureNames = QStringLiteral("{name}-{size}");
        return;
    }
    const QString text = valueOf(m_definitions.nameTemplate);
    m_options.pictureNames = text;
    m_options.otherNames = text;
    const bool hasSize = text.contains(QLatin1String("{size}"));
    QString rest = text;
    rest.remove(QLatin1String("{name}")).remove(QLatin1String("{size}"));
    if (rest.contains(QLatin1Char('{')) || rest.contains(QLatin1Char('}')))
        refuse(QStringLiteral("\"%1\" is not a name template; only {name} and {size} can be in braces")
                   .arg(text));
    for (const QString &part : text.split(QLatin1Char('/'))) {
        if (part.isEmpty() || part == QLatin1String(".") || part == QLatin1String(".."))
            refuse(QStringLiteral(
                       "\"%1\" is not a name template; it must be the path of a file below the output folder")
                       .arg(text));
    }

    if (hasSize && !std::ranges::all_of(m_options.formats, &ExportFormat::isPicture))
        refuse(QStringLiteral("only pictures have a size; the name template cannot contain {size}"));
    if (!hasSize && makesPictures() && m_options.sizes.size() > 1)
        refuse(QStringLiteral("the name template must contain {size} when there are several sizes"));
}

void ExportOptionsReader::readNeedles()
{
    const QStringList needles = valuesOf(m_definitions.split);
    const QStringList angles = valuesOf(m_definitions.needleAngle);
    if (angles.size() > needles.size())
        refuse(QStringLiteral("each --needle-angle needs a --split"));
    for (qsizetype i = 0; i < needles.size(); ++i) {
        m_options.needles.append({needles.at(i), {}});
        if (i >= angles.size())
            continue;
        bool isNumber = false;
        const double angle = angles.at(i).toDouble(&isNumber);
        if (!isNumber || !(std::abs(angle) <= maxNeedleAngle)) {
            refuseValue(m_definitions.needleAngle, angles.at(i),
                        QStringLiteral("a number of degrees from -%1 to %1").arg(maxNeedleAngle));
        }
        m_options.needles.last().angle = angle;
    }
}

void ExportOptionsReader::readFiles()
{
    for (const QString &name : positionalArguments())
        m_options.files.append(nativeName(name));
    if (m_options.files.isEmpty())
        refuse(QStringLiteral("no gauge file is given"));
    if (m_options.files.contains(QString()))
        refuse(QStringLiteral("a file has an empty name"));
    m_options.outputFolder = nativeName(valueOf(m_definitions.output));
    if (isSet(m_definitions.output) && m_options.outputFolder.isEmpty())
        refuse(QStringLiteral("the output folder has an empty name"));
}

bool ExportOptionsReader::makesPictures() const
{
    return std::ranges::any_of(m_options.formats, &ExportFormat::isPicture);
}

bool ExportOptionsReader::makesOneFile() const
{
    return m_options.formats.size() == 1 && (!makesPictures() || m_options.sizes.size() == 1);
}

void ExportOptionsReader::readOutputFile()
{
    if (!isSet(m_definitions.to))
        return;
    m_options.outputFile = nativeName(valueOf(m_definitions.to));
    const QString name = m_options.outputFile.section(QLatin1Char('/'), -1);
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") ||
        m_options.outputFile == QLatin1String("-"))
        refuse(QStringLiteral("--to needs the name of a file"));
    if (m_options.files.size() > 1 || !makesOneFile())
        refuse(QStringLiteral("--to needs one gauge, one format and one size"));
    if (splitsPictures())
        refuse(QStringLiteral("--split makes several files of a picture; --to names only one"));
    if (isSet(m_definitions.output) || isSet(m_definitions.nameTemplate))
        refuse(QStringLiteral("--to gives the whole name; --output and --name-template cannot be given too"));
}

void ExportOptionsReader::readStandardInput()
{
    if (!m_options.files.contains(QStringLiteral("-")))
        return;

    // The result is written to standard output.
    if (m_options.files.size() > 1)
        refuse(QStringLiteral("standard input (-) must be the only file"));
    if (!makesOneFile())
        refuse(QStringLiteral("standard input (-) is exported in one format and one size"));
    if (splitsPictures())
        refuse(QStringLiteral("--split makes several files of a picture; standard output takes only one"));
    if (isSet(m_definitions.output) || isSet(m_definitions.nameTemplate) || isSet(m_definitions.to))
        refuse(
            QStringLiteral("standard input (-) is written to standard output; it takes no folder or name"));
}

void ExportOptionsReader::readBackground()
{
    if (isSet(m_definitions.background)) {
        const QString value = valueOf(m_definitions.background);
        m_options.background = QColor::fromString(value);
        if (!m_options.background.isValid())
            refuseValue(m_definitions.background,
                        QStringLiteral("the name of a colour, #rgb, #rrggbb or #aarrggbb"));
    }
    if (isSet(m_definitions.background) && !makesPictures())
        refuse(QStringLiteral("--background needs a picture, such as --formats png"));
    const QColor &colour = m_options.background;
    for (const ExportFormat *format : std::as_const(m_options.formats)) {
        if (format->isOpaque && (!colour.isValid() || colour.alpha() < 255))
            refuse(QStringLiteral("%1 has no transparency; it needs an opaque --background, such as white")
                       .arg(QLatin1String(format->name)));
    }
}

void ExportOptionsReader::readScales()
{
    m_options.scales = valuesOf(m_definitions.scale);
    if (m_options.scales.contains(QString()))
        refuse(QStringLiteral("--scale needs the name of a layer"));
    const auto usesScales = [](const ExportFormat *format) { return format->scales != ScaleUse::None; };
    if (isSet(m_definitions.scale) && std::ranges::none_of(m_options.formats, usesScales))
        refuse(QStringLiteral("--scale needs --formats json, xml, h or html"));
    if (!isSet(m_definitions.maxError))
        return;
    bool isNumber = false;
    m_options.maxError = valueOf(m_definitions.maxError).toDouble(&isNumber);
    if (!isNumber || !(m_options.maxError >= OptionDefinitions::minMaxError &&
                       m_options.maxError <= OptionDefinitions::maxMaxError)) {
        refuseValue(m_definitions.maxError, QStringLiteral("a number from %1 to %2")
                                                .arg(QString::number(OptionDefinitions::minMaxError),
                                                     QString::number(OptionDefinitions::maxMaxError)));
    }
}

void ExportOptionsReader::readOtherOptions()
{
    m_options.layers = valuesOf(m_definitions.layers);
    readScales();
    m_options.textAsPaths = isSet(m_definitions.textAsPaths);
    m_options.dryRun = isSet(m_definitions.dryRun);
    m_options.quiet = isSet(m_definitions.quiet);

    m_options.existing = readExisting(m_definitions.overwrite, m_definitions.keep);
    m_options.compression = readCount(m_definitions.compression, m_options.compression, 0, maxCompression);
    m_options.quality = readCount(m_definitions.quality, m_options.quality, 0, maxQuality);
    if (isSet(m_definitions.byteOrder)) {
        const QString order = valueOf(m_definitions.byteOrder);
        if (order == QLatin1String("big"))
            m_options.byteOrder = ByteOrder::Big;
        else if (order != QLatin1String("little"))
            refuseValue(m_definitions.byteOrder, QStringLiteral("little or big"));
        if (!m_options.formats.contains(findExportFormat(QStringLiteral("rgb565"))))
            refuse(QStringLiteral("--byte-order needs --formats rgb565"));
    }
    m_options.crop = !isSet(m_definitions.noCrop);
    m_options.jobs =
        readCount(m_definitions.jobs, QThread::idealThreadCount(), 1, OptionDefinitions::maxJobs);
    m_options.tickLimit = readCount<quint64>(m_definitions.tickLimit, m_options.tickLimit, 1,
                                             std::numeric_limits<quint64>::max());
    m_options.inputLimit = readCount<qint64>(m_definitions.inputLimit, m_options.inputLimit, 1,
                                             OptionDefinitions::maxInputLimit);
}
