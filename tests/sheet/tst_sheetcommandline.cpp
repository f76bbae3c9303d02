#include "sheet/sheetcommandline.h"
#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The parsing of the command line of corvalence-sheet.
class tst_SheetCommandLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void readsSizesOfFiles();
    void readsPaper_data();
    void readsPaper();
    void readsMargins();
    void readsHoles();
};

namespace {

/// Parses arguments that are separated by blanks. '' is an empty argument.
SheetCommandLine parse(const QByteArray &arguments)
{
    QByteArrayList list{"corvalence-sheet"};
    for (const QByteArray &argument : arguments.split(' '))
        list.append(argument == "''" ? QByteArray() : argument);
    return parseSheetCommandLine(list);
}

SheetOptions optionsOf(const QByteArray &arguments)
{
    const SheetCommandLine result = parse("-o x.pdf a " + arguments);
    if (!result.text.isEmpty())
        qWarning().noquote() << result.text;
    return result.options;
}

} // namespace

void tst_SheetCommandLine::refusesWrongUsage_data()
{
    QTest::addColumn<QByteArray>("arguments");
    QTest::addColumn<QString>("error");
    const auto rows = [](const QString &error, const QByteArrayList &commandLines) {
        for (const QByteArray &arguments : commandLines)
            QTest::newRow(arguments.constData()) << arguments << error;
    };
    /// Wrong values of an option.
    const auto values = [&rows](const QString &option, const QString &expected, const QStringList &wrong) {
        for (const QString &value : wrong) {
            rows(u"\"%1\" is not a value for %2; it must be %3"_s.arg(value, option, expected),
                 {"-o x.pdf a " + option.toUtf8() + ' ' + value.toUtf8()});
        }
    };
    rows(u"no gauge file is given"_s, {"-o x.pdf"});
    rows(u"a file has an empty name"_s, {"-o x.pdf ''", "-o x.pdf =80"});
    rows(u"Unknown option 'nonsense'."_s, {"--nonsense a"});
    rows(u"--output is missing; it names the PDF file to write"_s, {"a"});
    rows(u"--output needs the name of a file"_s, {"-o '' a", "-o - a", "-o out/ a", "-o .. a"});
    rows(u"\"a=0\" gives no size from 1 to 5000 mm"_s, {"-o x.pdf a=0"});
    rows(u"\"a%2=0\" gives no size from 1 to 5000 mm"_s, {"-o x.pdf a%2=0"});
    rows(u"\"a=inf\" gives no size from 1 to 5000 mm"_s, {"-o x.pdf a=inf"});
    values(u"--mm"_s, u"a length from 1 to 5000 mm"_s, {u"wide"_s, u"0.9"_s, u"5001"_s, u"nan"_s});
    values(u"--gap"_s, u"a length from 0 to 5000 mm"_s, {u"-1"_s, u"inf"_s});
    values(u"--mm-of"_s, u"rim or canvas"_s, {u"face"_s});
    values(u"--fonts"_s, u"paths or embed"_s, {u"text"_s});
    values(u"--paper"_s, u"A3, A4, A5, Letter, Legal, Tabloid or WIDTHxHEIGHT in mm, up to 5000x5000"_s,
           {u"A9"_s, u"210x"_s, u"210"_s, u"0x10"_s, u"nanx10"_s, u"6000x10"_s, u"1x2x3"_s});
    values(u"--margins"_s, u"one or four lengths from 0 to 5000 mm"_s,
           {u"1,2"_s, u"1,2,3,x"_s, u"-1"_s, u"nan"_s, u"1,2,3,4,5"_s});
    values(u"--drill"_s, u"DIAMETER@X,Y in mm, with a diameter from 0.1"_s,
           {u"3"_s, u"3@"_s, u"3@1"_s, u"3@1,2,3"_s, u"0@1,2"_s, u"@1,2"_s, u"3@nan,0"_s, u"3@0,1e9"_s});
    values(u"--hole"_s, u"DIAMETER or DIAMETER@X,Y in mm, with a diameter from 0.1"_s,
           {u"big"_s, u"-8"_s, u"8@"_s, u"8@1"_s});
    values(u"--tick-limit"_s, u"a whole number from 1 to 18446744073709551615"_s, {u"0"_s});
    values(u"--input-limit"_s, u"a whole number from 1 to 1024"_s, {u"1025"_s});
    rows(u"the paper is too small for dials and the rule, which needs 102 mm in width and 10 mm in height "
         u"between the margins"_s,
         {"-o x.pdf --paper 111x300 a", "-o x.pdf --paper 300x20 a", "-o x.pdf --margins 150 a"});
    rows(u"--columns needs --contact"_s, {"-o x.pdf --columns 3 a"});
    rows(u"the paper is too small for 100 columns"_s, {"-o x.pdf --contact --columns 100 a"});
    for (const QByteArray option : {"mm 5", "mm-of rim", "cut-circles", "cut-marks", "centre-cross",
                                    "drill 3@0,0", "hole 3", "mirror", "caption"}) {
        rows(u"--contact sets the size of the dials; --%1 cannot be given too"_s.arg(
                 QString::fromLatin1(option.split(' ').first())),
             {"-o x.pdf --contact a --" + option});
    }
    rows(u"--contact sets the size of the dials; FILE=MM cannot be given too"_s,
         {"-o x.pdf --contact a b=5"});
    rows(u"--overwrite and --keep cannot be given together"_s, {"-o x.pdf --overwrite --keep a"});
    rows(u"\"\ufffd\" is not UTF-8"_s, {"-o x.pdf \xff"});
}

void tst_SheetCommandLine::refusesWrongUsage()
{
    QFETCH(const QByteArray, arguments);
    QFETCH(const QString, error);
    const SheetCommandLine result = parse(arguments);
    QCOMPARE(result.text, error);
    QCOMPARE(result.outcome, SheetCommandLine::Outcome::WrongUsage);
}

void tst_SheetCommandLine::readsSizesOfFiles()
{
    const QList<SheetFile> files = parse("-o x.pdf a b=52.5 c=d.gauge e=f=7 :g").options.files;
    QStringList paths;
    QList<double> sizes;
    for (const SheetFile &file : files) {
        paths.append(file.path);
        sizes.append(file.millimetres);
    }
    QCOMPARE(paths, QStringList({u"a"_s, u"b"_s, u"c=d.gauge"_s, u"e=f"_s, u"./:g"_s}));
    QCOMPARE(sizes, QList<double>({0.0, 52.5, 0.0, 7.0, 0.0}));
}

void tst_SheetCommandLine::readsPaper_data()
{
    QTest::addColumn<QSizeF>("size");
    QTest::newRow("--quiet") << QSizeF(210, 297);
    QTest::newRow("--paper A3") << QSizeF(297, 420);
    QTest::newRow("-p a5") << QSizeF(148, 210);
    QTest::newRow("--paper Letter") << QSizeF(215.9, 279.4);
    QTest::newRow("--paper legal") << QSizeF(215.9, 355.6);
    QTest::newRow("--paper TABLOID") << QSizeF(279.4, 431.8);
    QTest::newRow("--paper 120.5x80") << QSizeF(120.5, 80);
    QTest::newRow("--landscape") << QSizeF(297, 210);
    QTest::newRow("--landscape --paper 300x200") << QSizeF(300, 200);
}

void tst_SheetCommandLine::readsPaper()
{
    QFETCH(const QSizeF, size);
    QCOMPARE(optionsOf(QTest::currentDataTag()).paper.size, size);
}

void tst_SheetCommandLine::readsMargins()
{
    QCOMPARE(optionsOf("--margins 7").paper.margins, QMarginsF(7, 7, 7, 7));
    QCOMPARE(optionsOf("--margins 1,2,3,4").paper.margins, QMarginsF(4, 1, 2, 3));
}

void tst_SheetCommandLine::readsHoles()
{
    const QList<DialHole> holes = optionsOf("--drill 3.2@-1,-28 --hole 8 --hole 5@2,9").marks.holes;
    QList<double> diameters;
    QList<QPointF> places;
    for (const DialHole &hole : holes) {
        diameters.append(hole.diameter);
        places.append(hole.place);
    }
    QCOMPARE(diameters, QList<double>({3.2, 8.0, 5.0}));
    // Upwards on the command line is towards the top of the page.
    QCOMPARE(places, QList<QPointF>({{-1.0, 28.0}, {0.0, 0.0}, {2.0, -9.0}}));
}

ADD_TEST_CLASS(tst_SheetCommandLine)
#include "tst_sheetcommandline.moc"
