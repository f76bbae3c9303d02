#include "exporter/commandline.h"

#include "exporter/outputnames.h"
#include "tools/optionsreader.h"
#include "tools/program.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr int minSize = 64;
constexpr int maxSize = maxPictureSize;
// Below 200 inches, the maximum side of a PDF page.
constexpr double minSide = 1.0;
constexpr double maxSide = 5000.0;
constexpr double minMaxError = 0.0001;
constexpr double maxMaxError = 90.0;
constexpr int maxNeedleAngle = 36000; // 100 turns
constexpr int maxJobs = 1024;
constexpr int maxInputLimit = 1024;

/// "png, jpeg, ... or c"
QString formatList()
{
    QStringList names;
    for (const ExportFormat *format : exportFormats())
        names.append(QLatin1String(format->name));
    const QString last = names.takeLast();
    return names.join(QLatin1String(", ")) + QLatin1String(" or ") + last;
}

/// The options with their help texts.
struct OptionDefinitions
{
    QCommandLineOption formats{
        {QStringLiteral("f"), QStringLiteral("formats")},
        QStringLiteral("The formats to write, separated by commas: %1. csv is the "
                       "keyframe table, gauge a gauge file in the current form. "
                       "json, xml and h are the needle's angles as a table, html is a page with "
                       "a needle that moves. Default: png.")
            .arg(formatList()),
        QStringLiteral("list")};
    QCommandLineOption output{{QStringLiteral("o"), QStringLiteral("output")},
                              QStringLiteral("Write to this folder, which is created if it is missing. "
                                             "Default: the folder of each gauge."),
                              QStringLiteral("folder")};
    QCommandLineOption to{
        QStringLiteral("to"),
        QStringLiteral("The name of the output file, for one gauge in one format and one size. "
                       "Its suffix sets the format unless --formats is given."),
        QStringLiteral("file")};
    QCommandLineOption size{
        {QStringLiteral("s"), QStringLiteral("size")},
        QStringLiteral("The width and height of the pictures in pixels, from %1 to %2. Separate "
                       "several sizes by commas. Default: 512.")
            .arg(minSize)
            .arg(maxSize),
        QStringLiteral("pixels")};
    QCommandLineOption nameTemplate{
        {QStringLiteral("n"), QStringLiteral("name-template")},
        QStringLiteral("The names of the files without their suffix. {name} stands for the gauge's name, "
                       "{size} for the picture's size. Default: {name}, or {name}-{size} for several sizes."),
        QStringLiteral("template")};
    QCommandLineOption layers{
        {QStringLiteral("l"), QStringLiteral("layers")},
        QStringLiteral("Export only these layers, given by name or by number. The bottom "
                       "layer is number 1. Separate several by commas or repeat the "
                       "option. \"Needle*\" is every layer whose name begins so."),
        QStringLiteral("list")};
    QCommandLineOption split{
        QStringLiteral("split"),
        QStringLiteral(
            "Split pictures into -face, -needle and -cover. The list names the consecutive layers "
            "that make the needle, as for --layers. "
            "The needle is turned to 12 o'clock. Repeat the option for several needles."),
        QStringLiteral("list")};
    QCommandLineOption needleAngle{
        QStringLiteral("needle-angle"),
        QStringLiteral("The angle at which the needle of --split is drawn, clockwise from 12 o'clock. For "
                       "several needles repeat the option in the order of --split. Default: the angle of the "
                       "first tick of the needle's first layer."),
        QStringLiteral("degrees")};
    QCommandLineOption scale{
        QStringLiteral("scale"),
        QStringLiteral(
            "The layers whose scales become tables of angles, as for --layers. NAME=LAYER,LAYER joins "
            "layers into one table of this name. Repeat the option for several tables. Default: all "
            "layers whose labels are shown."),
        QStringLiteral("layers")};
    QCommandLineOption maxError{
        QStringLiteral("max-error"),
        QStringLiteral(
            "By how many degrees straight lines between the points of a table depart from the scale at "
            "most, from %1 to %2. Default: %3.")
            .arg(QString::number(minMaxError, 'g'), QString::number(maxMaxError),
                 QString::number(ExportOptions().maxError)),
        QStringLiteral("degrees")};
    QCommandLineOption textAsPaths{
        QStringLiteral("text-as-paths"),
        QStringLiteral("Draw the labels of SVG and PDF pictures as paths, which need no font.")};
    QCommandLineOption mm{QStringLiteral("mm"),
                          QStringLiteral("The printed width and height of the pictures in millimetres, from "
                                         "%1 to %2.")
                              .arg(minSide)
                              .arg(maxSide),
                          QStringLiteral("length")};
    QCommandLineOption dpi{
        QStringLiteral("dpi"),
        QStringLiteral(
            "The density of the pictures in pixels per inch. With --mm it sets the size in pixels."),
        QStringLiteral("density")};
    QCommandLineOption background{
        {QStringLiteral("b"), QStringLiteral("background")},
        QStringLiteral("The colour below the pictures: a name, #rgb, #rrggbb or #aarrggbb. With --split only "
                       "the face has it, except in a JPEG. Default: transparent."),
        QStringLiteral("colour")};
    QCommandLineOption quality{
        QStringLiteral("quality"),
        QStringLiteral("The quality of JPEG and WebP files, from 0 (smallest) to %1 (best). Default: %2.")
            .arg(maxQuality)
            .arg(ExportOptions().quality),
        QStringLiteral("number")};
    QCommandLineOption byteOrder{
        QStringLiteral("byte-order"),
        QStringLiteral(
            "The order of the two bytes of a pixel in RGB565 files: little or big. Default: little."),
        QStringLiteral("order")};
    QCommandLineOption noCrop{
        QStringLiteral("no-crop"),
        QStringLiteral(
            "Do not crop the needles and covers of --split in RGB565 and C files to their marks.")};
    QCommandLineOption compression{
        QStringLiteral("compression"),
        QStringLiteral(
            "The compression of PNG files, from 0 (none) to %1 (smallest files, slowest). Default: %2.")
            .arg(maxCompression)
            .arg(defaultCompression),
        QStringLiteral("level")};
    QCommandLineOption jobs{{QStringLiteral("j"), QStringLiteral("jobs")},
                            QStringLiteral("The number of gauges to export at the same time, up to %1. "
                                           "Default: one per core.")
                                .arg(maxJobs),
                            QStringLiteral("count")};
    QCommandLineOption overwrite{QStringLiteral("overwrite"), QStringLiteral("Replace files that exist.")};
    QCommandLineOption keep{QStringLiteral("keep"),
                            QStringLiteral("Keep files that exist. This is not an error.")};
    QCommandLineOption dryRun{
        QStringLiteral("dry-run"),
        QStringLiteral("Read and check the gauges and print the names of the files that "
                       "would be written, but write nothing.")};
    QCommandLineOption quiet{{QStringLiteral("q"), QStringLiteral("quiet")},
                             QStringLiteral("Print only errors.")};
    QCommandLineOption tickLimit{
        QStringLiteral("tick-limit"),
        QStringLiteral("Refuse a gauge with more ticks and arcs than this. Default: %1.")
            .arg(ExportOptions().tickLimit),
        QStringLiteral("count")};
    QCommandLineOption inputLimit{
        QStringLiteral("input-limit"),
        QStringLiteral("Refuse a gauge file larger than this, in MiB, up to %1. Default: %2.")
            .arg(maxInputLimit)
            .arg(ExportOptions().inputLimit),
        QStringLiteral("size")};
};

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

/// Turns the values of the options into ExportOptions. Only the first error is kept.
class ExportOptionsReader : public OptionsReader
{
public:
    ExportOptionsReader(const QCommandLineParser &parser, const OptionDefinitions &definitions)
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

    [[nodiscard]] const ExportOptions &options() const { return m_options; }

private:
    void readFormats();
    void readSizes();
    void readDimensions();
    void readNameTemplate();
    void readFiles();
    void readOutputFile();
    void readStandardInput();
    void readNeedles();
    void readBackground();
    void readScales();
    void readOtherOptions();
    void addFormat(const QString &name);
    [[nodiscard]] bool makesOneFile() const;
    [[nodiscard]] bool makesPictures() const;
    [[nodiscard]] bool splitsPictures() const { return makesPictures() && !m_options.needles.isEmpty(); }
    [[nodiscard]] double readLength(const QCommandLineOption &option);
    void checkSize(double size);

    const OptionDefinitions &m_definitions;
    ExportOptions m_options;
};

void ExportOptionsReader::addFormat(const QString &name)
{
    const ExportFormat *format = findExportFormat(name);
    if (format == nullptr)
        refuse(QStringLiteral("\"%1\" is not a format; it must be %2").arg(name, formatList()));
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
    if (size < minSize || size > maxSize)
        refuse(QStringLiteral("the size must be from %1 to %2 pixels").arg(minSize).arg(maxSize));
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
        m_options.sizes = {static_cast<int>(std::clamp<double>(size, minSize, maxSize))};
    }
    for (const ExportFormat *format : std::as_const(m_options.formats)) {
        if (format->isPicture && std::ranges::max(m_options.sizes) > format->maxSize)
            refuse(QStringLiteral("a %1 has at most %2 pixels on each side")
                       .arg(QLatin1String(format->name))
                       .arg(format->maxSize));
    }
    for (const int size : std::as_const(m_options.sizes)) {
        const double side = m_options.printedSize(size);
        if (side != 0.0 && (side < minSide || side > maxSide)) {
            refuse(QStringLiteral("the printed size must be from %1 to %2 mm").arg(minSide).arg(maxSide));
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
        refuse(QStringLiteral("--needle-angle belongs to a --split"));
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
    if (!isNumber || !(m_options.maxError >= minMaxError && m_options.maxError <= maxMaxError)) {
        refuseValue(m_definitions.maxError,
                    QStringLiteral("a number from %1 to %2")
                        .arg(QString::number(minMaxError), QString::number(maxMaxError)));
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
    m_options.jobs = readCount(m_definitions.jobs, QThread::idealThreadCount(), 1, maxJobs);
    m_options.tickLimit = readCount<quint64>(m_definitions.tickLimit, m_options.tickLimit, 1,
                                             std::numeric_limits<quint64>::max());
    m_options.inputLimit =
        readCount<qint64>(m_definitions.inputLimit, m_options.inputLimit, 1, maxInputLimit);
}

} // namespace

ExportCommandLine parseCommandLine(const QByteArrayList &arguments)
{
    const OptionDefinitions definitions;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes gauges as pictures, keyframe tables or gauge files, without a window."));
    parser.addPositionalArgument(
        QStringLiteral("FILE..."),
        QStringLiteral("Gauge files, in the current or the older form. A single - reads one gauge from "
                       "standard input and writes to standard output."),
        QStringLiteral("FILE..."));
    parser.addOptions(helpAndVersion());
    parser.addOptions(
        {definitions.formats,      definitions.output,      definitions.to,          definitions.size,
         definitions.nameTemplate, definitions.layers,      definitions.split,       definitions.needleAngle,
         definitions.scale,        definitions.maxError,    definitions.textAsPaths, definitions.mm,
         definitions.dpi,          definitions.compression, definitions.jobs,        definitions.background,
         definitions.byteOrder,    definitions.noCrop,      definitions.quality,     definitions.overwrite,
         definitions.keep,         definitions.dryRun,      definitions.quiet,       definitions.tickLimit,
         definitions.inputLimit});

    ExportCommandLine result;
    QStringList notUtf8;
    result.outcome = parseArguments(parser, arguments, notUtf8, result.text);
    if (result.outcome != CommandLineOutcome::Run)
        return result;
    const auto wrongUsage = [](const QString &error) {
        return ExportCommandLine{CommandLineOutcome::WrongUsage, error, {}};
    };
    const ExportOptionsReader reader(parser, definitions);
    if (!reader.error().isEmpty())
        return wrongUsage(reader.error());
    for (const QString &argument : std::as_const(notUtf8)) {
        if (!reader.options().files.contains(argument))
            return wrongUsage(QStringLiteral("\"%1\" is not UTF-8").arg(argument));
    }
    result.options = reader.options();
    result.options.notUtf8 = notUtf8;
    return result;
}
