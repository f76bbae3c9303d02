#include "sheet/sheetcommandline.h"

#include "tools/program.h"

#include <QCommandLineParser>
#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr double minDial = 1.0;
// Below 200 inches, the maximum side of a PDF page.
constexpr double maxSide = 5000.0;
constexpr double minHole = 0.1;
constexpr int maxColumns = 100;
constexpr int maxInputLimit = 1024;

struct NamedPaper
{
    const char *name;
    QSizeF size;
};

constexpr std::array papers{
    NamedPaper{"A3", {297.0, 420.0}},    NamedPaper{"A4", {210.0, 297.0}},
    NamedPaper{"A5", {148.0, 210.0}},    NamedPaper{"Letter", {215.9, 279.4}},
    NamedPaper{"Legal", {215.9, 355.6}}, NamedPaper{"Tabloid", {279.4, 431.8}},
};

/// The options with their help texts.
struct OptionDefinitions
{
    QCommandLineOption output{{QStringLiteral("o"), QStringLiteral("output")},
                              QStringLiteral("The PDF file to write. Needed."),
                              QStringLiteral("file")};
    QCommandLineOption paper{
        {QStringLiteral("p"), QStringLiteral("paper")},
        QStringLiteral("The paper: A3, A4, A5, Letter, Legal, Tabloid, or WIDTHxHEIGHT in mm. Default: A4."),
        QStringLiteral("size")};
    QCommandLineOption landscape{QStringLiteral("landscape"),
                                 QStringLiteral("Turn the paper so that its longer side is the width.")};
    QCommandLineOption margins{
        QStringLiteral("margins"),
        QStringLiteral(
            "The empty edge of the paper in mm: one number, or the top, right, bottom and left edge "
            "separated by commas. Default: 5."),
        QStringLiteral("lengths")};
    QCommandLineOption gap{QStringLiteral("gap"),
                           QStringLiteral("The space between dials in mm. Default: 3."),
                           QStringLiteral("length")};
    QCommandLineOption mm{QStringLiteral("mm"),
                          QStringLiteral("The size of the dials in mm. FILE=MM sets the size of one. "
                                         "Default: 80."),
                          QStringLiteral("length")};
    QCommandLineOption mmOf{
        QStringLiteral("mm-of"),
        QStringLiteral("What --mm measures: rim, the diameter of the face, or canvas, the "
                       "side of the whole square picture. Default: rim."),
        QStringLiteral("part")};
    QCommandLineOption cutCircles{QStringLiteral("cut-circles"),
                                  QStringLiteral("Draw a circle of the size of the dial, to cut along.")};
    QCommandLineOption cutMarks{
        QStringLiteral("cut-marks"),
        QStringLiteral("Draw crop marks at the corners of a square of the size of the dial.")};
    QCommandLineOption centreCross{QStringLiteral("centre-cross"),
                                   QStringLiteral("Draw a cross at the centre of the dial.")};
    QCommandLineOption drill{
        QStringLiteral("drill"),
        QStringLiteral("Draw a hole to drill: its diameter and its place from the centre of the dial, to the "
                       "right and up, in mm. Can be repeated."),
        QStringLiteral("diameter@x,y")};
    QCommandLineOption hole{
        QStringLiteral("hole"),
        QStringLiteral(
            "Draw a hole for the shaft: its diameter in mm, and its place if it is not the centre."),
        QStringLiteral("diameter[@x,y]")};
    QCommandLineOption mirror{
        QStringLiteral("mirror"),
        QStringLiteral("Follow each dial by a mirrored copy, for stickers behind a window.")};
    QCommandLineOption caption{QStringLiteral("caption"),
                               QStringLiteral("Print the name and the size below each dial.")};
    QCommandLineOption contact{
        QStringLiteral("contact"),
        QStringLiteral("Make a contact sheet: dials with names, as large as the columns allow.")};
    QCommandLineOption columns{
        QStringLiteral("columns"),
        QStringLiteral("The number of columns of a contact sheet, up to %1. Default: 4.").arg(maxColumns),
        QStringLiteral("count")};
    QCommandLineOption fonts{
        QStringLiteral("fonts"),
        QStringLiteral(
            "How to write labels and other texts: paths, which look the same everywhere, or embed, "
            "text in embedded fonts, which can be searched. Default: paths."),
        QStringLiteral("form")};
    QCommandLineOption overwrite{QStringLiteral("overwrite"), QStringLiteral("Replace a file that exists.")};
    QCommandLineOption keep{QStringLiteral("keep"),
                            QStringLiteral("Keep a file that exists. This is not an error.")};
    QCommandLineOption dryRun{QStringLiteral("dry-run"),
                              QStringLiteral("Read the gauges, place them and print the number of pages, but "
                                             "write nothing.")};
    QCommandLineOption quiet{{QStringLiteral("q"), QStringLiteral("quiet")},
                             QStringLiteral("Print only errors.")};
    QCommandLineOption tickLimit{
        QStringLiteral("tick-limit"),
        QStringLiteral("Refuse a gauge with more ticks and arcs than this. Default: %1.")
            .arg(SheetOptions().tickLimit),
        QStringLiteral("count")};
    QCommandLineOption inputLimit{
        QStringLiteral("input-limit"),
        QStringLiteral("Refuse a gauge file larger than this, in MiB, up to %1. Default: %2.")
            .arg(maxInputLimit)
            .arg(SheetOptions().inputLimit),
        QStringLiteral("size")};

    [[nodiscard]] QList<QCommandLineOption> all() const
    {
        return {output,   paper,       landscape, margins, gap,    mm,        mmOf,      cutCircles,
                cutMarks, centreCross, drill,     hole,    mirror, caption,   contact,   columns,
                fonts,    overwrite,   keep,      dryRun,  quiet,  tickLimit, inputLimit};
    }
    /// Those that make no sense on a contact sheet.
    [[nodiscard]] QList<QCommandLineOption> forTrueSize() const
    {
        return {mm, mmOf, cutCircles, cutMarks, centreCross, drill, hole, mirror, caption};
    }
};

/// The number in a text. NaN when it is none.
double numberIn(const QString &text)
{
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    return isNumber ? number : std::numeric_limits<double>::quiet_NaN();
}

bool isInRange(double number, double min, double max)
{
    return number >= min && number <= max; // false for NaN
}

/// Turns the values of the options into SheetOptions. Only the first error is kept.
class SheetOptionsReader : public OptionsReader
{
public:
    SheetOptionsReader(const QCommandLineParser &parser, const OptionDefinitions &definitions)
        : OptionsReader(parser)
        , m_definitions(definitions)
    {
        readFiles();
        readPaper();
        readSize();
        readMarks();
        readContact();
        readOtherOptions();
    }

    [[nodiscard]] const SheetOptions &options() const { return m_options; }

private:
    void readFiles();
    void readFile(const QString &argument);
    void readPaper();
    void readMargins();
    void readSize();
    void readMarks();
    void readHole(const QCommandLineOption &option, const QString &value, bool needsPlace);
    void readContact();
    void readOtherOptions();
    [[nodiscard]] double readLength(const QCommandLineOption &option, double defaultLength, double min);
    /// Whether the option has the second of two values.
    [[nodiscard]] bool readChoice(const QCommandLineOption &option, const QString &first,
                                  const QString &second);

    const OptionDefinitions &m_definitions;
    SheetOptions m_options;
};

double SheetOptionsReader::readLength(const QCommandLineOption &option, double defaultLength, double min)
{
    if (!isSet(option))
        return defaultLength;
    const QString value = valueOf(option);
    const double length = numberIn(value);
    if (isInRange(length, min, maxSide))
        return length;
    refuseValue(option, value, QStringLiteral("a length from %1 to %2 mm").arg(min).arg(maxSide));
    return defaultLength;
}

bool SheetOptionsReader::readChoice(const QCommandLineOption &option, const QString &first,
                                    const QString &second)
{
    const QString value = isSet(option) ? valueOf(option) : first;
    if (value != first && value != second)
        refuseValue(option, value, QStringLiteral("%1 or %2").arg(first, second));
    return value == second;
}

/// FILE or FILE=MM. What follows the last = is a size if it is a number.
void SheetOptionsReader::readFile(const QString &argument)
{
    const qsizetype sign = argument.lastIndexOf(u'=');
    const double size =
        sign < 0 ? std::numeric_limits<double>::quiet_NaN() : numberIn(argument.mid(sign + 1));
    if (std::isnan(size)) {
        m_options.files.append({nativeName(argument), 0.0});
        return;
    }
    if (!isInRange(size, minDial, maxSide)) {
        refuse(QStringLiteral("\"%1\" gives no size from %2 to %3 mm")
                   .arg(argument, QString::number(minDial), QString::number(maxSide)));
    }
    m_options.files.append({nativeName(argument.left(sign)), size});
}

void SheetOptionsReader::readFiles()
{
    for (const QString &argument : positionalArguments())
        readFile(argument);
    if (m_options.files.isEmpty())
        refuse(QStringLiteral("no gauge file is given"));
    for (const SheetFile &file : std::as_const(m_options.files)) {
        if (file.path.isEmpty())
            refuse(QStringLiteral("a file has an empty name"));
    }
    if (!isSet(m_definitions.output))
        refuse(QStringLiteral("--output is missing; it names the PDF file to write"));
    m_options.outputFile = nativeName(valueOf(m_definitions.output));
    const QString name = m_options.outputFile.section(QLatin1Char('/'), -1);
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") ||
        m_options.outputFile == QLatin1String("-"))
        refuse(QStringLiteral("--output needs the name of a file"));
}

void SheetOptionsReader::readMargins()
{
    if (!isSet(m_definitions.margins))
        return;
    const QString value = valueOf(m_definitions.margins);
    QList<double> lengths;
    for (const QString &part : value.split(QLatin1Char(',')))
        lengths.append(numberIn(part));
    const auto isValid = [](double length) { return isInRange(length, 0.0, maxSide); };
    if ((lengths.size() != 1 && lengths.size() != 4) || !std::ranges::all_of(lengths, isValid)) {
        refuseValue(m_definitions.margins, value,
                    QStringLiteral("one or four lengths from 0 to %1 mm").arg(maxSide));
        return;
    }
    const auto side = [&lengths](qsizetype index) { return lengths.at(lengths.size() == 1 ? 0 : index); };
    m_options.paper.margins = QMarginsF(side(3), side(0), side(1), side(2));
}

void SheetOptionsReader::readPaper()
{
    if (isSet(m_definitions.paper)) {
        const QString value = valueOf(m_definitions.paper);
        const auto *const named = std::ranges::find_if(papers, [&value](const NamedPaper &paper) {
            return value.compare(QLatin1String(paper.name), Qt::CaseInsensitive) == 0;
        });
        const QStringList sides = value.split(QLatin1Char('x'), Qt::KeepEmptyParts, Qt::CaseInsensitive);
        if (named != papers.end())
            m_options.paper.size = named->size;
        else if (sides.size() == 2)
            m_options.paper.size = QSizeF(numberIn(sides.first()), numberIn(sides.last()));
        const QSizeF &size = m_options.paper.size;
        if ((named == papers.end() && sides.size() != 2) || !isInRange(size.width(), minDial, maxSide) ||
            !isInRange(size.height(), minDial, maxSide)) {
            refuseValue(
                m_definitions.paper, value,
                QStringLiteral("A3, A4, A5, Letter, Legal, Tabloid or WIDTHxHEIGHT in mm, up to %1x%1")
                    .arg(maxSide));
            return;
        }
    }
    QSizeF &size = m_options.paper.size;
    if (isSet(m_definitions.landscape) && size.width() < size.height())
        size.transpose();
    readMargins();
    m_options.paper.gap = readLength(m_definitions.gap, m_options.paper.gap, 0.0);
    if (!dialArea(m_options.paper).isValid()) {
        refuse(
            QStringLiteral("the paper is too small for dials and the rule, which needs 102 mm in width and "
                           "10 mm in height between the margins"));
    }
}

void SheetOptionsReader::readSize()
{
    m_options.millimetres = readLength(m_definitions.mm, m_options.millimetres, minDial);
    if (readChoice(m_definitions.mmOf, QStringLiteral("rim"), QStringLiteral("canvas")))
        m_options.measure = DialMeasure::Canvas;
}

/// DIAMETER@X,Y, or only the diameter of a hole at the centre.
void SheetOptionsReader::readHole(const QCommandLineOption &option, const QString &value, bool needsPlace)
{
    const qsizetype at = value.indexOf(u'@');
    const QStringList place = value.mid(at + 1).split(QLatin1Char(','));
    DialHole hole{numberIn(at < 0 ? value : value.left(at)), QPointF()};
    bool isValid = isInRange(hole.diameter, minHole, maxSide) && (at >= 0 ? place.size() == 2 : !needsPlace);
    if (isValid && at >= 0) {
        // Up on the command line, down on the page.
        hole.place = QPointF(numberIn(place.first()), -numberIn(place.last()));
        isValid =
            isInRange(hole.place.x(), -maxSide, maxSide) && isInRange(hole.place.y(), -maxSide, maxSide);
    }
    if (!isValid) {
        refuseValue(
            option, value,
            QStringLiteral("%1 in mm, with a diameter from %2")
                .arg(needsPlace ? QStringLiteral("DIAMETER@X,Y") : QStringLiteral("DIAMETER or DIAMETER@X,Y"))
                .arg(minHole));
    }
    m_options.marks.holes.append(hole);
}

void SheetOptionsReader::readMarks()
{
    DialMarks &marks = m_options.marks;
    marks.cutCircle = isSet(m_definitions.cutCircles);
    marks.cropMarks = isSet(m_definitions.cutMarks);
    marks.centreCross = isSet(m_definitions.centreCross);
    marks.caption = isSet(m_definitions.caption);
    for (const QString &value : valuesOf(m_definitions.drill))
        readHole(m_definitions.drill, value, true);
    for (const QString &value : valuesOf(m_definitions.hole))
        readHole(m_definitions.hole, value, false);
    m_options.mirroredCopies = isSet(m_definitions.mirror);
}

void SheetOptionsReader::readContact()
{
    if (!isSet(m_definitions.contact)) {
        if (isSet(m_definitions.columns))
            refuse(QStringLiteral("--columns needs --contact"));
        return;
    }
    constexpr int defaultColumns = 4;
    m_options.contactColumns = readCount<int>(m_definitions.columns, defaultColumns, 1, maxColumns);
    for (const QCommandLineOption &option : m_definitions.forTrueSize()) {
        if (isSet(option)) {
            refuse(QStringLiteral("--contact sets the size of the dials; --%1 cannot be given too")
                       .arg(option.names().constLast()));
        }
    }
    for (const SheetFile &file : std::as_const(m_options.files)) {
        if (file.millimetres > 0.0)
            refuse(QStringLiteral("--contact sets the size of the dials; FILE=MM cannot be given too"));
    }
    if (contactCell(m_options.paper, m_options.contactColumns).side < minDial)
        refuse(QStringLiteral("the paper is too small for %1 columns").arg(m_options.contactColumns));
}

void SheetOptionsReader::readOtherOptions()
{
    m_options.embedFonts = readChoice(m_definitions.fonts, QStringLiteral("paths"), QStringLiteral("embed"));
    m_options.dryRun = isSet(m_definitions.dryRun);
    m_options.quiet = isSet(m_definitions.quiet);
    m_options.existing = readExisting(m_definitions.overwrite, m_definitions.keep);
    m_options.tickLimit = readCount<quint64>(m_definitions.tickLimit, m_options.tickLimit, 1,
                                             std::numeric_limits<quint64>::max());
    m_options.inputLimit =
        readCount<qint64>(m_definitions.inputLimit, m_options.inputLimit, 1, maxInputLimit);
}

} // namespace

SheetCommandLine parseSheetCommandLine(const QByteArrayList &arguments)
{
    const OptionDefinitions definitions;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Puts gauges on pages of a PDF, at true size, to print."));
    parser.addPositionalArgument(
        QStringLiteral("FILE..."),
        QStringLiteral("Gauge files, in the current or the older form. FILE=MM gives one its own size."),
        QStringLiteral("FILE[=MM]..."));
    parser.addOptions(definitions.all());
    parser.addOptions(helpAndVersion());

    SheetCommandLine result;
    QStringList notUtf8;
    result.outcome = parseArguments(parser, arguments, notUtf8, result.text);
    if (result.outcome != CommandLineOutcome::Run)
        return result;
    const SheetOptionsReader reader(parser, definitions);
    if (!reader.error().isEmpty())
        return {CommandLineOutcome::WrongUsage, reader.error(), {}};
    if (!notUtf8.isEmpty())
        return {CommandLineOutcome::WrongUsage,
                QStringLiteral("\"%1\" is not UTF-8").arg(notUtf8.constFirst()),
                {}};
    result.options = reader.options();
    return result;
}
