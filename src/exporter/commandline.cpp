#include "exporter/commandline.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFileInfo>
#include <QThread>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>

namespace {

constexpr int smallestSize = 64;
constexpr int largestSize = 16384;
constexpr double millimetresPerInch = 25.4;
// The largest side stays below the 200 inches that a PDF page may have.
constexpr double smallestSide = 1.0;
constexpr double largestSide = 5000.0;

constexpr std::array allFormats{ExportFormat::Png, ExportFormat::Svg, ExportFormat::Pdf,
                                ExportFormat::KeyframeTable, ExportFormat::Gauge};

/// The options, each a name and what the help says of it.
struct Options
{
    // Not the parser's own, which brings along one for the options of the toolkit.
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help.")};
    QCommandLineOption formats{
        {QStringLiteral("f"), QStringLiteral("formats")},
        QStringLiteral("What to write: any of png, svg, pdf, csv (the keyframe table) and "
                       "gauge (today's form of the file), separated by commas. "
                       "Default: png."),
        QStringLiteral("list")};
    QCommandLineOption output{{QStringLiteral("o"), QStringLiteral("output")},
                              QStringLiteral("Write into this folder, which is made when it is missing. "
                                             "Default: the folder of each gauge."),
                              QStringLiteral("folder")};
    QCommandLineOption to{
        QStringLiteral("to"),
        QStringLiteral("Write the one file that is made to this name. Without --formats its suffix "
                       "says what to write; png unless it is one of them."),
        QStringLiteral("file")};
    QCommandLineOption size{
        {QStringLiteral("s"), QStringLiteral("size")},
        QStringLiteral("The side of the pictures in pixels, from 64 to 16384; several are "
                       "separated by commas. Default: 512."),
        QStringLiteral("pixels")};
    QCommandLineOption nameTemplate{
        {QStringLiteral("n"), QStringLiteral("name-template")},
        QStringLiteral("The files' names without their suffix; {name} stands for the gauge's, {size} for the "
                       "picture's size. Default: {name}, or {name}-{size} when there are several sizes."),
        QStringLiteral("template")};
    QCommandLineOption layers{
        {QStringLiteral("l"), QStringLiteral("layers")},
        QStringLiteral(
            "Only these layers, by name or by number counted from the bottom layer, 1; several are "
            "separated by commas. May be given again."),
        QStringLiteral("list")};
    QCommandLineOption textAsPaths{
        QStringLiteral("text-as-paths"),
        QStringLiteral("Draw labels as outlines, so that the drawing needs no font where it is shown.")};
    QCommandLineOption mm{QStringLiteral("mm"),
                          QStringLiteral("The true side of the pictures in millimetres."),
                          QStringLiteral("length")};
    QCommandLineOption dpi{
        QStringLiteral("dpi"),
        QStringLiteral(
            "The density of the pictures in pixels per inch. With --mm it gives the size in pixels."),
        QStringLiteral("density")};
    QCommandLineOption jobs{{QStringLiteral("j"), QStringLiteral("jobs")},
                            QStringLiteral("How many gauges to work on at a time. Default: one per core."),
                            QStringLiteral("count")};
    QCommandLineOption overwrite{QStringLiteral("overwrite"), QStringLiteral("Replace files that exist.")};
    QCommandLineOption keep{QStringLiteral("keep"),
                            QStringLiteral("Leave files that exist as they are, and do not count it as a "
                                           "failure.")};
    QCommandLineOption dryRun{QStringLiteral("dry-run"),
                              QStringLiteral("Read and check the gauges and tell what would be written, but "
                                             "write nothing.")};
    QCommandLineOption quiet{{QStringLiteral("q"), QStringLiteral("quiet")},
                             QStringLiteral("Tell of failures only.")};
    QCommandLineOption tickLimit{
        QStringLiteral("tick-limit"),
        QStringLiteral("Refuse a gauge with more ticks than this. Default: 10000000."),
        QStringLiteral("count")};
};

/// The parts of an option that may be given several times and take several values each.
QStringList listOf(const QStringList &values)
{
    QStringList parts;
    for (const QString &value : values) {
        for (const QString &part : value.split(QLatin1Char(',')))
            parts.append(part.trimmed());
    }
    return parts;
}

std::optional<ExportFormat> formatNamed(const QString &name)
{
    for (const ExportFormat format : allFormats) {
        if (formatName(format) == name)
            return format;
    }
    return {};
}

template <typename Value>
void appendOnce(QList<Value> &list, const Value &value)
{
    if (!list.contains(value))
        list.append(value);
}

/// Turns the values of the options into settings. What is wrong is noted, the first of it alone, and reading
/// goes on: nothing is done with the settings then.
class SettingsReader
{
public:
    SettingsReader(const QCommandLineParser &parser, const Options &options)
        : m_parser(parser)
        , m_options(options)
    {
        readFormats();
        readDimensions();
        readNameTemplate();
        readFiles();
        readOutputFile();
        readStandardInput();
        readConduct();
    }

    [[nodiscard]] const ExportSettings &settings() const { return m_settings; }
    /// Empty when the command line can be followed.
    [[nodiscard]] const QString &problem() const { return m_problem; }

private:
    void refuse(const QString &reason)
    {
        if (m_problem.isEmpty())
            m_problem = reason;
    }

    void readFormats();
    void readSizes();
    void readDimensions();
    void readNameTemplate();
    void readFiles();
    void readOutputFile();
    void readStandardInput();
    [[nodiscard]] bool makesOneFile() const;
    void readConduct();
    [[nodiscard]] double readLength(const QCommandLineOption &option);
    [[nodiscard]] quint64 readCount(const QCommandLineOption &option, quint64 most);
    void checkSize(double size);
    void refuseValue(const QCommandLineOption &option);

    const QCommandLineParser &m_parser;
    const Options &m_options;
    ExportSettings m_settings;
    QString m_problem;
};

void SettingsReader::readFormats()
{
    if (!m_parser.isSet(m_options.formats)) {
        if (const auto format = formatNamed(QFileInfo(m_parser.value(m_options.to)).suffix().toLower()))
            m_settings.formats = {*format};
        return;
    }
    m_settings.formats.clear();
    for (const QString &name : listOf(m_parser.values(m_options.formats))) {
        const auto format = formatNamed(name);
        if (!format)
            refuse(QStringLiteral("\"%1\" is not a format; it may be png, svg, pdf, csv or gauge").arg(name));
        else
            appendOnce(m_settings.formats, *format);
    }
}

void SettingsReader::checkSize(double size)
{
    if (size < smallestSize || size > largestSize)
        refuse(QStringLiteral("the size must lie from %1 to %2 pixels").arg(smallestSize).arg(largestSize));
}

void SettingsReader::readSizes()
{
    if (!m_parser.isSet(m_options.size))
        return;
    m_settings.sizes.clear();
    for (const QString &text : listOf(m_parser.values(m_options.size))) {
        bool isNumber = false;
        const int size = text.toInt(&isNumber);
        if (!isNumber)
            refuse(QStringLiteral("\"%1\" is not a size").arg(text));
        checkSize(size);
        appendOnce(m_settings.sizes, size);
    }
}

void SettingsReader::refuseValue(const QCommandLineOption &option)
{
    refuse(QStringLiteral("\"%1\" is not a value for --%2")
               .arg(m_parser.value(option), option.names().constLast()));
}

double SettingsReader::readLength(const QCommandLineOption &option)
{
    if (!m_parser.isSet(option))
        return 0.0;
    bool isNumber = false;
    const double length = m_parser.value(option).toDouble(&isNumber);
    if (!isNumber || !(length > 0.0) || !std::isfinite(length))
        refuseValue(option);
    return length;
}

quint64 SettingsReader::readCount(const QCommandLineOption &option, quint64 most)
{
    bool isNumber = false;
    const quint64 count = m_parser.value(option).toULongLong(&isNumber);
    if (!isNumber || count < 1 || count > most)
        refuseValue(option);
    return count;
}

void SettingsReader::readDimensions()
{
    readSizes();
    m_settings.millimetres = readLength(m_options.mm);
    m_settings.dotsPerInch = readLength(m_options.dpi);

    if (m_parser.isSet(m_options.mm) && m_parser.isSet(m_options.dpi)) {
        if (m_parser.isSet(m_options.size))
            refuse(QStringLiteral("--mm and --dpi together give the size; --size cannot be given too"));
        const double size = std::round(m_settings.millimetres / millimetresPerInch * m_settings.dotsPerInch);
        checkSize(size);
        m_settings.sizes = {static_cast<int>(std::clamp<double>(size, smallestSize, largestSize))};
    }
    for (const int size : std::as_const(m_settings.sizes)) {
        const double side = m_settings.trueSide(size);
        if (side != 0.0 && (side < smallestSide || side > largestSide)) {
            refuse(QStringLiteral("the true side of the pictures must lie from %1 to %2 mm")
                       .arg(smallestSide)
                       .arg(largestSide));
        }
    }
}

void SettingsReader::readNameTemplate()
{
    if (!m_parser.isSet(m_options.nameTemplate)) {
        if (m_settings.sizes.size() > 1)
            m_settings.pictureNames = QStringLiteral("{name}-{size}");
        return;
    }
    const QString text = m_parser.value(m_options.nameTemplate);
    m_settings.pictureNames = text;
    m_settings.otherNames = text;
    const bool hasSize = text.contains(QLatin1String("{size}"));
    QString rest = text;
    rest.remove(QLatin1String("{name}")).remove(QLatin1String("{size}"));
    if (rest.contains(QLatin1Char('{')) || rest.contains(QLatin1Char('}')) || text.isEmpty() ||
        text.startsWith(QLatin1Char('/')) || text.endsWith(QLatin1Char('/')))
        refuse(QStringLiteral("\"%1\" is not a name template").arg(text));

    const QList<ExportFormat> &formats = m_settings.formats;
    if (hasSize && !std::ranges::all_of(formats, isPicture))
        refuse(QStringLiteral("csv and gauge files have no size; the name template cannot hold {size}"));
    if (!hasSize && std::ranges::any_of(formats, isPicture) && m_settings.sizes.size() > 1)
        refuse(QStringLiteral("the name template must hold {size} when there are several sizes"));
}

void SettingsReader::readFiles()
{
    m_settings.files = m_parser.positionalArguments();
    if (m_settings.files.isEmpty())
        refuse(QStringLiteral("no gauge file is named"));
    if (m_settings.files.contains(QString()))
        refuse(QStringLiteral("a file has an empty name"));
    m_settings.outputFolder = m_parser.value(m_options.output);
    if (m_parser.isSet(m_options.output) && m_settings.outputFolder.isEmpty())
        refuse(QStringLiteral("the output folder has an empty name"));
}

bool SettingsReader::makesOneFile() const
{
    const bool severalSizes =
        std::ranges::any_of(m_settings.formats, isPicture) && m_settings.sizes.size() > 1;
    return m_settings.formats.size() == 1 && !severalSizes;
}

void SettingsReader::readOutputFile()
{
    if (!m_parser.isSet(m_options.to))
        return;
    m_settings.outputFile = m_parser.value(m_options.to);
    if (m_settings.outputFile.isEmpty() || m_settings.outputFile == QLatin1String("-"))
        refuse(QStringLiteral("--to needs the name of a file"));
    if (m_settings.files.size() > 1 || !makesOneFile())
        refuse(QStringLiteral("--to takes one gauge in one format and one size"));
    if (m_parser.isSet(m_options.output) || m_parser.isSet(m_options.nameTemplate))
        refuse(QStringLiteral("--to says the whole name; --output and --name-template cannot be given too"));
}

void SettingsReader::readStandardInput()
{
    if (!m_settings.files.contains(QStringLiteral("-")))
        return;

    // The result goes to standard output, which has room for one.
    if (m_settings.files.size() > 1)
        refuse(QStringLiteral("standard input (-) must be the only file"));
    if (!makesOneFile())
        refuse(QStringLiteral("standard input (-) is exported in one format and one size"));
    if (m_parser.isSet(m_options.output) || m_parser.isSet(m_options.nameTemplate) ||
        m_parser.isSet(m_options.to))
        refuse(
            QStringLiteral("standard input (-) is written to standard output; it takes no folder or name"));
}

void SettingsReader::readConduct()
{
    m_settings.layers = m_parser.values(m_options.layers);
    m_settings.textAsPaths = m_parser.isSet(m_options.textAsPaths);
    m_settings.dryRun = m_parser.isSet(m_options.dryRun);
    m_settings.quiet = m_parser.isSet(m_options.quiet);

    if (m_parser.isSet(m_options.overwrite) && m_parser.isSet(m_options.keep))
        refuse(QStringLiteral("--overwrite and --keep exclude each other"));
    if (m_parser.isSet(m_options.overwrite))
        m_settings.existing = ExistingFile::Overwrite;
    if (m_parser.isSet(m_options.keep))
        m_settings.existing = ExistingFile::Keep;

    constexpr int mostJobs = 1024;
    m_settings.jobs = QThread::idealThreadCount();
    if (m_parser.isSet(m_options.jobs))
        m_settings.jobs = static_cast<int>(std::min<quint64>(readCount(m_options.jobs, mostJobs), mostJobs));
    if (m_parser.isSet(m_options.tickLimit))
        m_settings.tickLimit = readCount(m_options.tickLimit, std::numeric_limits<quint64>::max());
}

} // namespace

double ExportSettings::trueSide(int size) const
{
    if (millimetres > 0.0)
        return millimetres;
    return dotsPerInch > 0.0 ? size / dotsPerInch * millimetresPerInch : 0.0;
}

CommandLine readCommandLine(const QStringList &arguments)
{
    const Options options;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes gauges as pictures, keyframe tables or gauge files, without a window."));
    parser.addPositionalArgument(
        QStringLiteral("FILE..."),
        QStringLiteral("Gauge files, today's or older; - alone reads standard input and "
                       "writes standard output."),
        QStringLiteral("FILE..."));
    const QCommandLineOption version = parser.addVersionOption();
    parser.addOptions({options.help, options.formats, options.output, options.to, options.size,
                       options.nameTemplate, options.layers, options.textAsPaths, options.mm, options.dpi,
                       options.jobs, options.overwrite, options.keep, options.dryRun, options.quiet,
                       options.tickLimit});

    if (!parser.parse(arguments))
        return {CommandLine::Outcome::WrongUsage, parser.errorText(), {}};
    if (parser.isSet(options.help))
        return {CommandLine::Outcome::ShowText, parser.helpText(), {}};
    if (parser.isSet(version)) {
        return {CommandLine::Outcome::ShowText,
                QCoreApplication::applicationName() + QLatin1Char(' ') +
                    QCoreApplication::applicationVersion() + QLatin1Char('\n'),
                {}};
    }
    const SettingsReader reader(parser, options);
    if (!reader.problem().isEmpty())
        return {CommandLine::Outcome::WrongUsage, reader.problem(), {}};
    return {CommandLine::Outcome::Export, QString(), reader.settings()};
}

bool isPicture(ExportFormat format)
{
    return format != ExportFormat::KeyframeTable && format != ExportFormat::Gauge;
}

QString formatName(ExportFormat format)
{
    switch (format) {
    case ExportFormat::Png:
        return QStringLiteral("png");
    case ExportFormat::Svg:
        return QStringLiteral("svg");
    case ExportFormat::Pdf:
        return QStringLiteral("pdf");
    case ExportFormat::KeyframeTable:
        return QStringLiteral("csv");
    case ExportFormat::Gauge:
        return QStringLiteral("gauge");
    }
    Q_UNREACHABLE();
}
