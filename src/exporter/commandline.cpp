#include "exporter/commandline.h"

#include "exporter/outputnames.h"
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
    // Not QCommandLineParser::addHelpOption(), which adds --help-all for options of Qt itself.
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                               QStringLiteral("Show the version.")};
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
            "Split pictures into -face, -needle and -cover. The list names the neighbouring layers "
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
class OptionsReader
{
public:
    OptionsReader(const QCommandLineParser &parser, const OptionDefinitions &definitions)
        : m_parser(parser)
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
    /// Empty when the command line is right.
    [[nodiscard]] const QString &error() const { return m_error; }

private:
    void refuse(const QString &reason)
    {
        if (m_error.isEmpty())
            m_error = reason;
    }
    /// Refuses the value of an option. @a expected describes the valid values.
    void refuseValue(const QCommandLineOption &option, const QString &expected);
    void refuseCount(const QCommandLineOption &option, quint64 minCount, quint64 maxCount);

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
    /// Reads a whole number from 0.
    [[nodiscard]] int readLevel(const QCommandLineOption &option, int defaultLevel, int maxLevel);
    template <typename Number>
    [[nodiscard]] Number readCount(const QCommandLineOption &option, Number defaultCount, Number maxCount);
    void checkSize(double size);

    const QCommandLineParser &m_parser;
    const OptionDefinitions &m_definitions;
    ExportOptions m_options;
    QString m_error;
};

void OptionsReader::addFormat(const QString &name)
{
    const ExportFormat *format = findExportFormat(name);
    if (format == nullptr)
        refuse(QStringLiteral("\"%1\" is not a format; it must be %2").arg(name, formatList()));
    else if (format->missing != nullptr && !format->missing().isEmpty())
        refuse(format->missing());
    else
        appendOnce(m_options.formats, format);
}

void OptionsReader::readFormats()
{
    const QString suffix = QFileInfo(m_parser.value(m_definitions.to)).suffix().toLower();
    const bool isSet = m_parser.isSet(m_definitions.formats);
    if (!isSet && suffix.isEmpty())
        return;
    m_options.formats.clear();
    const QStringList names = isSet ? listOf(m_parser.values(m_definitions.formats)) : QStringList{suffix};
    for (const QString &name : names)
        addFormat(name);
}

void OptionsReader::checkSize(double size)
{
    if (size < minSize || size > maxSize)
        refuse(QStringLiteral("the size must be from %1 to %2 pixels").arg(minSize).arg(maxSize));
}

void OptionsReader::readSizes()
{
    if (!m_parser.isSet(m_definitions.size))
        return;
    m_options.sizes.clear();
    for (const QString &text : listOf(m_parser.values(m_definitions.size))) {
        bool isNumber = false;
        const int size = text.toInt(&isNumber);
        if (!isNumber)
            refuse(QStringLiteral("\"%1\" is not a size; it must be a whole number of pixels").arg(text));
        checkSize(size);
        appendOnce(m_options.sizes, size);
    }
}

void OptionsReader::refuseValue(const QCommandLineOption &option, const QString &expected)
{
    refuse(QStringLiteral("\"%1\" is not a value for --%2; it must be %3")
               .arg(m_parser.value(option), option.names().constLast(), expected));
}

void OptionsReader::refuseCount(const QCommandLineOption &option, quint64 minCount, quint64 maxCount)
{
    refuseValue(option, QStringLiteral("a whole number from %1 to %2").arg(minCount).arg(maxCount));
}

double OptionsReader::readLength(const QCommandLineOption &option)
{
    if (!m_parser.isSet(option))
        return 0.0;
    bool isNumber = false;
    const double length = m_parser.value(option).toDouble(&isNumber);
    if (!isNumber || !(length > 0.0) || !std::isfinite(length))
        refuseValue(option, QStringLiteral("a number above 0"));
    return length;
}

template <typename Number>
Number OptionsReader::readCount(const QCommandLineOption &option, Number defaultCount, Number maxCount)
{
    if (!m_parser.isSet(option))
        return defaultCount;
    bool isNumber = false;
    const quint64 count = m_parser.value(option).toULongLong(&isNumber);
    if (!isNumber || count < 1 || count > static_cast<quint64>(maxCount)) {
        refuseCount(option, 1, static_cast<quint64>(maxCount));
        return defaultCount;
    }
    return static_cast<Number>(count);
}

int OptionsReader::readLevel(const QCommandLineOption &option, int defaultLevel, int maxLevel)
{
    if (!m_parser.isSet(option))
        return defaultLevel;
    bool isNumber = false;
    const int level = m_parser.value(option).toInt(&isNumber);
    if (!isNumber || level < 0 || level > maxLevel)
        refuseCount(option, 0, static_cast<quint64>(maxLevel));
    return level;
}

void OptionsReader::readDimensions()
{
    readSizes();
    m_options.millimetres = readLength(m_definitions.mm);
    m_options.dotsPerInch = readLength(m_definitions.dpi);

    if (m_parser.isSet(m_definitions.mm) && m_parser.isSet(m_definitions.dpi)) {
        if (m_parser.isSet(m_definitions.size))
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

void OptionsReader::readNameTemplate()
{
    if (!m_parser.isSet(m_definitions.nameTemplate)) {
        if (m_options.sizes.size() > 1)
            m_options.pictureNames = QStringLiteral("{name}-{size}");
        return;
    }
    const QString text = m_parser.value(m_definitions.nameTemplate);
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

void OptionsReader::readNeedles()
{
    const QStringList needles = m_parser.values(m_definitions.split);
    const QStringList angles = m_parser.values(m_definitions.needleAngle);
    if (angles.size() > needles.size())
        refuse(QStringLiteral("--needle-angle belongs to a --split"));
    for (qsizetype i = 0; i < needles.size(); ++i) {
        m_options.needles.append({needles.at(i), {}});
        if (i >= angles.size())
            continue;
        bool isNumber = false;
        const double angle = angles.at(i).toDouble(&isNumber);
        if (!isNumber || !std::isfinite(angle))
            refuse(QStringLiteral("\"%1\" is not a value for --needle-angle; it must be a number of degrees")
                       .arg(angles.at(i)));
        m_options.needles.last().angle = angle;
    }
}

void OptionsReader::readFiles()
{
    for (const QString &name : m_parser.positionalArguments())
        m_options.files.append(nativeName(name));
    if (m_options.files.isEmpty())
        refuse(QStringLiteral("no gauge file is given"));
    if (m_options.files.contains(QString()))
        refuse(QStringLiteral("a file has an empty name"));
    m_options.outputFolder = nativeName(m_parser.value(m_definitions.output));
    if (m_parser.isSet(m_definitions.output) && m_options.outputFolder.isEmpty())
        refuse(QStringLiteral("the output folder has an empty name"));
}

bool OptionsReader::makesPictures() const
{
    return std::ranges::any_of(m_options.formats, &ExportFormat::isPicture);
}

bool OptionsReader::makesOneFile() const
{
    return m_options.formats.size() == 1 && (!makesPictures() || m_options.sizes.size() == 1);
}

void OptionsReader::readOutputFile()
{
    if (!m_parser.isSet(m_definitions.to))
        return;
    m_options.outputFile = nativeName(m_parser.value(m_definitions.to));
    const QString name = m_options.outputFile.section(QLatin1Char('/'), -1);
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") ||
        m_options.outputFile == QLatin1String("-"))
        refuse(QStringLiteral("--to needs the name of a file"));
    if (m_options.files.size() > 1 || !makesOneFile())
        refuse(QStringLiteral("--to needs one gauge, one format and one size"));
    if (splitsPictures())
        refuse(QStringLiteral("--split makes several files of a picture; --to names only one"));
    if (m_parser.isSet(m_definitions.output) || m_parser.isSet(m_definitions.nameTemplate))
        refuse(QStringLiteral("--to gives the whole name; --output and --name-template cannot be given too"));
}

void OptionsReader::readStandardInput()
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
    if (m_parser.isSet(m_definitions.output) || m_parser.isSet(m_definitions.nameTemplate) ||
        m_parser.isSet(m_definitions.to))
        refuse(
            QStringLiteral("standard input (-) is written to standard output; it takes no folder or name"));
}

void OptionsReader::readBackground()
{
    if (m_parser.isSet(m_definitions.background)) {
        const QString value = m_parser.value(m_definitions.background);
        m_options.background = QColor::fromString(value);
        if (!m_options.background.isValid())
            refuseValue(m_definitions.background,
                        QStringLiteral("the name of a colour, #rgb, #rrggbb or #aarrggbb"));
    }
    const QColor &colour = m_options.background;
    for (const ExportFormat *format : std::as_const(m_options.formats)) {
        if (format->isOpaque && (!colour.isValid() || colour.alpha() < 255))
            refuse(QStringLiteral("%1 has no transparency; it needs an opaque --background, such as white")
                       .arg(QLatin1String(format->name)));
    }
}

void OptionsReader::readScales()
{
    m_options.scales = m_parser.values(m_definitions.scale);
    if (m_options.scales.contains(QString()))
        refuse(QStringLiteral("--scale needs the name of a layer"));
    if (!m_parser.isSet(m_definitions.maxError))
        return;
    bool isNumber = false;
    m_options.maxError = m_parser.value(m_definitions.maxError).toDouble(&isNumber);
    if (!isNumber || !(m_options.maxError >= minMaxError && m_options.maxError <= maxMaxError)) {
        refuseValue(m_definitions.maxError,
                    QStringLiteral("a number from %1 to %2")
                        .arg(QString::number(minMaxError), QString::number(maxMaxError)));
    }
}

void OptionsReader::readOtherOptions()
{
    m_options.layers = m_parser.values(m_definitions.layers);
    readScales();
    m_options.textAsPaths = m_parser.isSet(m_definitions.textAsPaths);
    m_options.dryRun = m_parser.isSet(m_definitions.dryRun);
    m_options.quiet = m_parser.isSet(m_definitions.quiet);

    const bool overwrite = m_parser.isSet(m_definitions.overwrite);
    const bool keep = m_parser.isSet(m_definitions.keep);
    if (overwrite && keep)
        refuse(QStringLiteral("--overwrite and --keep cannot be given together"));
    if (overwrite)
        m_options.existing = ExistingFile::Overwrite;
    else if (keep)
        m_options.existing = ExistingFile::Keep;

    m_options.compression = readLevel(m_definitions.compression, m_options.compression, maxCompression);
    m_options.quality = readLevel(m_definitions.quality, m_options.quality, maxQuality);
    if (m_parser.isSet(m_definitions.byteOrder)) {
        const QString order = m_parser.value(m_definitions.byteOrder);
        if (order == QLatin1String("big"))
            m_options.byteOrder = ByteOrder::Big;
        else if (order != QLatin1String("little"))
            refuseValue(m_definitions.byteOrder, QStringLiteral("little or big"));
    }
    m_options.crop = !m_parser.isSet(m_definitions.noCrop);
    m_options.jobs = readCount(m_definitions.jobs, QThread::idealThreadCount(), maxJobs);
    m_options.tickLimit =
        readCount(m_definitions.tickLimit, m_options.tickLimit, std::numeric_limits<quint64>::max());
    m_options.inputLimit = readCount<qint64>(m_definitions.inputLimit, m_options.inputLimit, maxInputLimit);
}

} // namespace

CommandLine parseCommandLine(const QByteArrayList &arguments)
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
    parser.addOptions(
        {definitions.help,        definitions.version,     definitions.formats,      definitions.output,
         definitions.to,          definitions.size,        definitions.nameTemplate, definitions.layers,
         definitions.split,       definitions.needleAngle, definitions.scale,        definitions.maxError,
         definitions.textAsPaths, definitions.mm,          definitions.dpi,          definitions.compression,
         definitions.jobs,        definitions.background,  definitions.byteOrder,    definitions.noCrop,
         definitions.quality,     definitions.overwrite,   definitions.keep,         definitions.dryRun,
         definitions.quiet,       definitions.tickLimit,   definitions.inputLimit});

    QStringList notUtf8;
    const auto wrongUsage = [](const QString &error) {
        return CommandLine{CommandLine::Outcome::WrongUsage, error, {}};
    };
    if (!parser.parse(decodedArguments(arguments, notUtf8)))
        return wrongUsage(parser.errorText());
    if (parser.isSet(definitions.help))
        return {CommandLine::Outcome::ShowText, parser.helpText(), {}};
    if (parser.isSet(definitions.version)) {
        const QString text = QStringLiteral("%1 %2\n").arg(QCoreApplication::applicationName(),
                                                           QCoreApplication::applicationVersion());
        return {CommandLine::Outcome::ShowText, text, {}};
    }
    const OptionsReader reader(parser, definitions);
    if (!reader.error().isEmpty())
        return wrongUsage(reader.error());
    for (const QString &argument : std::as_const(notUtf8)) {
        if (!reader.options().files.contains(argument))
            return wrongUsage(QStringLiteral("\"%1\" is not UTF-8").arg(argument));
    }
    CommandLine result{CommandLine::Outcome::Export, QString(), reader.options()};
    result.options.notUtf8 = notUtf8;
    return result;
}
