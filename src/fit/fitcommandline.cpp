#include "fit/fitcommandline.h"

#include "fit/scalemarks.h"
#include "fit/tablerow.h"
#include "tools/program.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {

// The limits of the editor's form.
constexpr int maxParts = 100;
constexpr double maxRadius = 1.0;
constexpr double maxWidth = 100.0;

constexpr double minBound = 0.01;
constexpr double maxBound = 10.0;
constexpr qsizetype maxRangeCount = 100;

/// The options with their help texts.
struct OptionDefinitions
{
    QCommandLineOption output{{QStringLiteral("o"), QStringLiteral("output")},
                              QStringLiteral("The gauge file to write; - for standard output."),
                              QStringLiteral("file")};
    QCommandLineOption overwrite{QStringLiteral("overwrite"), QStringLiteral("Replace files that exist.")};
    QCommandLineOption keep{QStringLiteral("keep"),
                            QStringLiteral("Keep files that exist. This is not an error. If the gauge or the "
                                           "table of --table exists, neither is written.")};
    QCommandLineOption map{
        QStringLiteral("map"),
        QStringLiteral("The second column holds readings, and this one is at this angle. Give it twice; the "
                       "other readings are on the line through both."),
        QStringLiteral("reading=angle")};
    QCommandLineOption straight{QStringLiteral("straight"),
                                QStringLiteral("Draw straight lines between the points, as simulators do, "
                                               "instead of a smooth curve.")};
    QCommandLineOption extrapolate{
        QStringLiteral("extrapolate"),
        QStringLiteral("Continue the curve beyond the points, along its last slopes.")};
    QCommandLineOption maxError{QStringLiteral("max-error"),
                                QStringLiteral("How far a mark may be off the curve, from %1 to %2 degrees. "
                                               "Default: %3.")
                                    .arg(minBound)
                                    .arg(maxBound)
                                    .arg(FitOptions().maxError),
                                QStringLiteral("degrees")};
    QCommandLineOption labels{
        QStringLiteral("labels"),
        QStringLiteral("The values to label, separated by commas. Default: round numbers that fit."),
        QStringLiteral("list")};
    QCommandLineOption step{QStringLiteral("step"), QStringLiteral("Label the multiples of this number."),
                            QStringLiteral("number")};
    QCommandLineOption minor{
        QStringLiteral("minor"),
        QStringLiteral("Divide each gap between labels into this many parts. Default: 1."),
        QStringLiteral("count")};
    QCommandLineOption subminor{
        QStringLiteral("subminor"),
        QStringLiteral("Divide each gap between minor marks into this many parts. Needs --minor above 1. "
                       "Default: 1."),
        QStringLiteral("count")};
    QCommandLineOption decimals{
        QStringLiteral("decimals"),
        QStringLiteral("The decimals of the labels, up to %1. Default: as many as they need.")
            .arg(maxFormDecimals),
        QStringLiteral("count")};
    QCommandLineOption withoutSign{QStringLiteral("unsigned"),
                                   QStringLiteral("Write the labels without their sign.")};
    QCommandLineOption style{
        QStringLiteral("style"),
        QStringLiteral("Take radii, widths, colours, caps and font from this layer of a gauge. Default: the "
                       "gauge's first layer with labels."),
        QStringLiteral("file[:layer]")};
    QCommandLineOption into{
        QStringLiteral("into"),
        QStringLiteral("Put the new layers into this gauge in place of those of --replace."),
        QStringLiteral("file")};
    QCommandLineOption replace{
        QStringLiteral("replace"),
        QStringLiteral("The layers that are replaced, by name or by number, separated "
                       "by commas. Without --style, the first of them with labels gives the look."),
        QStringLiteral("list")};
    QCommandLineOption range{
        QStringLiteral("range"),
        QStringLiteral("Add an arc of this colour from one value to another. Repeat the option "
                       "for more arcs."),
        QStringLiteral("colour:from:to")};
    QCommandLineOption rangeRadius{
        QStringLiteral("range-radius"),
        QStringLiteral("The radius of these arcs as a fraction of the face's, up to %1. Default: the arcs "
                       "touch the outer ends of the labelled marks from inside.")
            .arg(maxRadius),
        QStringLiteral("radius")};
    QCommandLineOption rangeWidth{
        QStringLiteral("range-width"),
        QStringLiteral("The width of these arcs in units of the 512-unit canvas, up to %1. Default: 8.")
            .arg(maxWidth),
        QStringLiteral("width")};
    QCommandLineOption angleTable{
        QStringLiteral("table"),
        QStringLiteral("Also write the curve as an angle table; the suffix json, xml or h sets its format."),
        QStringLiteral("file")};
    QCommandLineOption report{
        QStringLiteral("report"),
        QStringLiteral("The form of the report on standard error: text or json. Default: text."),
        QStringLiteral("form")};
    QCommandLineOption check{
        QStringLiteral("check"),
        QStringLiteral(
            "Compare the labelled marks of this gauge with the table and write nothing. Fails when "
            "one is off by more than --max-error."),
        QStringLiteral("gauge")};
    QCommandLineOption layers{
        QStringLiteral("layers"),
        QStringLiteral("The layers to check, by name or by number, separated by commas. Default: all that "
                       "show labels."),
        QStringLiteral("list")};

    [[nodiscard]] QList<QCommandLineOption> all() const
    {
        return {labels,      step,      minor, subminor,   decimals, withoutSign, maxError,    straight,
                extrapolate, map,       style, into,       replace,  range,       rangeRadius, rangeWidth,
                output,      overwrite, keep,  angleTable, report,   check,       layers};
    }
};

/// Turns the values of the options into FitOptions. Only the first error is kept.
class FitOptionsReader : public OptionsReader
{
public:
    FitOptionsReader(const QCommandLineParser &parser, const OptionDefinitions &definitions)
        : OptionsReader(parser)
        , m_definitions(definitions)
    {
        readTableName();
        readCurve();
        readMarks();
        readLook();
        readOutput();
        readCheck();
    }

    [[nodiscard]] const FitOptions &options() const { return m_options; }

private:
    void readTableName();
    void readCurve();
    void readMap();
    void readMarks();
    void readLabels();
    void readLook();
    void readRanges();
    void readOutput();
    void readCheck();
    [[nodiscard]] QString fileName(const QCommandLineOption &option);
    [[nodiscard]] QString layerList(const QCommandLineOption &option);
    [[nodiscard]] double readNumber(const QCommandLineOption &option, double min, double max);

    const OptionDefinitions &m_definitions;
    FitOptions m_options;
};

bool parseNumber(const QString &text, double &number)
{
    return readTableNumber(text.trimmed(), number).isEmpty();
}

QString FitOptionsReader::fileName(const QCommandLineOption &option)
{
    QString name = nativeName(valueOf(option));
    if (isSet(option) && name.isEmpty())
        refuse(QStringLiteral("--%1 needs the name of a file").arg(option.names().constLast()));
    return name;
}

QString FitOptionsReader::layerList(const QCommandLineOption &option)
{
    const QStringList lists = valuesOf(option);
    if (std::ranges::any_of(lists, [](const QString &list) { return list.trimmed().isEmpty(); }))
        refuse(QStringLiteral("--%1 needs the name of a layer").arg(option.names().constLast()));
    return lists.join(u',');
}

double FitOptionsReader::readNumber(const QCommandLineOption &option, double min, double max)
{
    double number = min;
    if (!parseNumber(valueOf(option), number) || number < min || number > max) {
        refuseValue(option, valueOf(option), QStringLiteral("a number from %1 to %2").arg(min).arg(max));
        return min;
    }
    return number;
}

void FitOptionsReader::readTableName()
{
    const QStringList names = positionalArguments();
    if (names.isEmpty())
        refuse(QStringLiteral("no table of measured points is given"));
    else if (names.size() > 1)
        refuse(QStringLiteral("only one table can be given; \"%1\" is the second").arg(names.at(1)));
    else if (names.constFirst().isEmpty())
        refuse(QStringLiteral("the table has an empty name"));
    else
        m_options.table = nativeName(names.constFirst());
}

void FitOptionsReader::readMap()
{
    const QStringList pairs = valuesOf(m_definitions.map);
    if (pairs.isEmpty())
        return;
    QList<double> numbers;
    for (const QString &pair : pairs) {
        double reading = 0.0;
        double angle = 0.0;
        const QStringList sides = pair.split(u'=');
        if (sides.size() != 2 || !parseNumber(sides.constFirst(), reading) ||
            !parseNumber(sides.constLast(), angle))
            refuseValue(m_definitions.map, pair, QStringLiteral("a reading and an angle, such as 100=45"));
        numbers.append({reading, angle});
    }
    if (pairs.size() != 2) {
        refuse(QStringLiteral("--map must be given twice"));
        return;
    }
    m_options.map = ReadingMap{numbers.at(0), numbers.at(1), numbers.at(2), numbers.at(3)};
    if (numbers.at(0) == numbers.at(2))
        refuse(QStringLiteral("both --map options have the same reading"));
    if (numbers.at(1) == numbers.at(3))
        refuse(QStringLiteral("both --map options have the same angle"));
}

void FitOptionsReader::readCurve()
{
    readMap();
    m_options.straight = isSet(m_definitions.straight);
    m_options.extrapolate = isSet(m_definitions.extrapolate);
    if (isSet(m_definitions.maxError))
        m_options.maxError = readNumber(m_definitions.maxError, minBound, maxBound);
}

void FitOptionsReader::readLabels()
{
    for (const QString &text : valuesOf(m_definitions.labels).join(u',').split(u',')) {
        double label = 0.0;
        if (!parseNumber(text, label))
            refuseValue(m_definitions.labels, text, QStringLiteral("numbers separated by commas"));
        m_options.labels.append(label);
    }
    std::ranges::sort(m_options.labels);
    const auto twice = std::ranges::adjacent_find(std::as_const(m_options.labels));
    if (twice != m_options.labels.cend())
        refuse(QStringLiteral("--labels lists %1 twice").arg(QString::number(*twice, 'g', 15)));
    if (m_options.labels.size() > maxLabelCount)
        refuse(QStringLiteral("--labels lists more than %1 values").arg(maxLabelCount));
}

void FitOptionsReader::readMarks()
{
    if (isSet(m_definitions.labels) && isSet(m_definitions.step))
        refuse(QStringLiteral("--labels and --step cannot be given together"));
    if (isSet(m_definitions.labels))
        readLabels();
    if (isSet(m_definitions.step)) {
        const QString text = valueOf(m_definitions.step);
        if (!parseNumber(text, m_options.step) || !(m_options.step > 0.0))
            refuseValue(m_definitions.step, text, QStringLiteral("a number above 0"));
    }
    m_options.minor = readCount(m_definitions.minor, 1, 1, maxParts);
    m_options.subminor = readCount(m_definitions.subminor, 1, 1, maxParts);
    if (m_options.subminor > 1 && m_options.minor == 1)
        refuse(QStringLiteral("--subminor needs --minor above 1"));
    m_options.decimals = readCount(m_definitions.decimals, -1, 0, maxFormDecimals);
    m_options.withoutSign = isSet(m_definitions.withoutSign);
}

void FitOptionsReader::readRanges()
{
    const QStringList texts = valuesOf(m_definitions.range);
    for (const QString &text : texts) {
        ValueRange range;
        const QStringList parts = text.split(u':');
        if (parts.size() == 3)
            range.color = QColor(parts.constFirst());
        if (parts.size() != 3 || !range.color.isValid() || !parseNumber(parts.at(1), range.from) ||
            !parseNumber(parts.at(2), range.to) || range.from == range.to)
            refuseValue(m_definitions.range, text,
                        QStringLiteral("a colour and two values, such as red:80:100 or #ff8800:60:80"));
        m_options.ranges.append(range);
    }
    if (texts.size() > maxRangeCount)
        refuse(QStringLiteral("--range is given more than %1 times").arg(maxRangeCount));
    if (texts.isEmpty() && (isSet(m_definitions.rangeRadius) || isSet(m_definitions.rangeWidth)))
        refuse(QStringLiteral("--range-radius and --range-width need --range"));
    if (isSet(m_definitions.rangeRadius))
        m_options.rangeRadius = readNumber(m_definitions.rangeRadius, 0.0, maxRadius);
    if (isSet(m_definitions.rangeWidth))
        m_options.rangeWidth = readNumber(m_definitions.rangeWidth, 0.0, maxWidth);
}

void FitOptionsReader::readLook()
{
    m_options.style = fileName(m_definitions.style);
    m_options.into = fileName(m_definitions.into);
    m_options.replace = layerList(m_definitions.replace);
    if (isSet(m_definitions.into) != isSet(m_definitions.replace))
        refuse(QStringLiteral("--into and --replace must be given together"));
    readRanges();
}

void FitOptionsReader::readOutput()
{
    m_options.output = fileName(m_definitions.output);
    m_options.angleTable = fileName(m_definitions.angleTable);
    m_options.existing = readExisting(m_definitions.overwrite, m_definitions.keep);

    const QString suffix = QFileInfo(m_options.angleTable).suffix().toLower();
    const auto cleanPath = [](const QString &name) {
        return QDir::cleanPath(QFileInfo(name).absoluteFilePath());
    };
    if (isSet(m_definitions.angleTable) && cleanPath(m_options.angleTable) == cleanPath(m_options.output))
        refuse(QStringLiteral("--output and --table name the same file"));
    const QStringList suffixes{QStringLiteral("json"), QStringLiteral("xml"), QStringLiteral("h")};
    if (isSet(m_definitions.angleTable) && !suffixes.contains(suffix))
        refuseValue(m_definitions.angleTable, m_options.angleTable,
                    QStringLiteral("a file with the suffix json, xml or h"));
    if (isSet(m_definitions.report)) {
        const QString form = valueOf(m_definitions.report);
        m_options.jsonReport = form == QLatin1String("json");
        if (!m_options.jsonReport && form != QLatin1String("text"))
            refuseValue(m_definitions.report, form, QStringLiteral("text or json"));
    }
}

void FitOptionsReader::readCheck()
{
    m_options.checkedGauge = fileName(m_definitions.check);
    m_options.checkedLayers = layerList(m_definitions.layers);
    if (!isSet(m_definitions.check)) {
        if (isSet(m_definitions.layers))
            refuse(QStringLiteral("--layers needs --check"));
        if (!isSet(m_definitions.output))
            refuse(QStringLiteral("--output is missing"));
        return;
    }
    for (const QCommandLineOption &option :
         {m_definitions.labels, m_definitions.step, m_definitions.minor, m_definitions.subminor,
          m_definitions.decimals, m_definitions.style, m_definitions.into, m_definitions.range,
          m_definitions.output, m_definitions.overwrite, m_definitions.keep, m_definitions.angleTable}) {
        if (isSet(option))
            refuse(QStringLiteral("--check writes nothing; --%1 cannot be given too")
                       .arg(option.names().constLast()));
    }
}

} // namespace

FitCommandLine parseFitCommandLine(const QByteArrayList &arguments)
{
    const OptionDefinitions definitions;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Makes the scale of a gauge from measured points, or checks one."));
    parser.addPositionalArgument(
        QStringLiteral("TABLE"),
        QStringLiteral("The points: a text file of two columns, value and angle in degrees clockwise from 12 "
                       "o'clock, or an angle table of corvalence-export in xml or json; - for standard "
                       "input."));
    parser.addOptions(helpAndVersion());
    parser.addOptions(definitions.all());

    FitCommandLine result;
    QStringList notUtf8;
    result.outcome = parseArguments(parser, arguments, notUtf8, result.text);
    if (result.outcome != CommandLineOutcome::Run)
        return result;
    if (!notUtf8.isEmpty())
        return {CommandLineOutcome::WrongUsage,
                QStringLiteral("\"%1\" is not UTF-8").arg(notUtf8.constFirst()),
                {}};
    const FitOptionsReader reader(parser, definitions);
    if (!reader.error().isEmpty())
        return {CommandLineOutcome::WrongUsage, reader.error(), {}};
    result.options = reader.options();
    return result;
}
