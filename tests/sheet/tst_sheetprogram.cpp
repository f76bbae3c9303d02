#include "model/gaugefile.h"
#include "support/namedvalues.h"
#include "support/programrun.h"
#include "support/terminal.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The program as users call it. What it draws is measured by tests/sheet/measure.
class tst_SheetProgram : public ProgramTest
{
    Q_OBJECT

public:
    tst_SheetProgram()
        : ProgramTest(QStringLiteral(CORVALENCE_SHEET))
    {
    }

private Q_SLOTS:
    void init();
    void makesPages_data();
    void makesPages();
    void makesTheSameBytesAgain();
    void writesToStandardOutput();
    void refusesToWriteToATerminal();
    void refusesUnknownOptions();
    void makesNoSheetWithoutEveryGauge();
    void namesTheLargestDialThatFits();
    void replacesOnlyWhenTold();
    void neverReplacesAGauge();
    void onlyTellsInADryRun();
    void drawsAnyNumbers();
    void refusesTooLargeASheet();
};

namespace {

/// The number of pages that a PDF says it has.
int pageCount(const QByteArray &pdf)
{
    const qsizetype start = pdf.indexOf("/Count ");
    return start < 0 ? 0 : pdf.mid(start + 7, 8).simplified().split(' ').first().toInt();
}

} // namespace

void tst_SheetProgram::init()
{
    failOnUnexpectedWarnings();
    makeFolder();
    gaugeLayer bold{u"Bold"_s, {}};
    bold.data.tickCountFont.setBold(true);
    for (const QString &name : {u"Clock.gauge"_s, u"Fuel.gauge"_s})
        write(name, gaugeFile::write({{u"Layer"_s, {}}, bold}));
}

void tst_SheetProgram::makesPages_data()
{
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<int>("pages");
    QTest::newRow("--mm 80") << QByteArray("x.pdf: 2 dials on 1 page\n") << 1;
    QTest::newRow("--mm 150") << QByteArray("x.pdf: 2 dials on 2 pages\n") << 2;
    QTest::newRow("--mm 150 --mirror") << QByteArray("x.pdf: 4 dials on 4 pages\n") << 4;
    QTest::newRow("--contact --columns 1") << QByteArray("x.pdf: 2 dials on 2 pages\n") << 2;
    QTest::newRow("--contact") << QByteArray("x.pdf: 2 dials on 1 page\n") << 1;
    QTest::newRow("--quiet") << QByteArray() << 1;
}

void tst_SheetProgram::makesPages()
{
    QFETCH(const QByteArray, out);
    QFETCH(const int, pages);
    const ProgramRun result = run("-o x.pdf Clock.gauge Fuel.gauge "_ba.append(QTest::currentDataTag()));
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, out);
    QCOMPARE(result.status, 0);
    QCOMPARE(pageCount(read(u"x.pdf"_s)), pages);
}

void tst_SheetProgram::makesTheSameBytesAgain()
{
    for (const char *zone : {"UTC", "Asia/Kolkata", "UTC"}) {
        const QByteArray earlier = read(u"x.pdf"_s);
        // Two fonts, whose order could change.
        QCOMPARE(run("--overwrite --fonts embed --caption -o x.pdf Clock.gauge Fuel.gauge",
                     {.environment = {{u"TZ"_s, QLatin1String(zone)}}})
                     .status,
                 0);
        QVERIFY(earlier.isEmpty() || read(u"x.pdf"_s) == earlier);
    }
}

void tst_SheetProgram::writesToStandardOutput()
{
    const ProgramRun result = run("-o /dev/stdout Clock.gauge");
    QVERIFY(result.out.startsWith("%PDF-"));
    QVERIFY(result.out.trimmed().endsWith("%%EOF"));
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.status, 0);
}

void tst_SheetProgram::refusesToWriteToATerminal()
{
    const Terminal terminal(80);
    if (!terminal.isOpen())
        QSKIP("The system has no pseudo-terminals.");
    const ProgramRun result = run("-o /dev/stdout Clock.gauge", {.standardOutput = terminal.path()});
    QCOMPARE(result.status, 2);
    QVERIFY(result.err.contains("standard output is a terminal"));
    QCOMPARE(terminal.takeText(), QByteArray());
}

void tst_SheetProgram::refusesUnknownOptions()
{
    const ProgramRun result = run("-o x.pdf --nonsense Clock.gauge");
    QCOMPARE(result.status, 2);
    QVERIFY(result.err.startsWith("corvalence-sheet: Unknown option 'nonsense'."));
    QCOMPARE(result.out, QByteArray());
}

void tst_SheetProgram::makesNoSheetWithoutEveryGauge()
{
    write(u"list.gauge"_s, "[]");
    const ProgramRun result = run("-o x.pdf Clock.gauge gone.gauge Fuel.gauge list.gauge");
    QCOMPARE(result.err, "corvalence-sheet: gone.gauge: No such file or directory\n"
                         "corvalence-sheet: list.gauge: It is not a gauge: it begins with \"[\".\n"_ba);
    QCOMPARE(result.status, 1);
    QVERIFY(!files().contains(u"x.pdf"_s));
    QVERIFY(run("-o x.pdf Clock.gauge --tick-limit 9").err.contains("--tick-limit raises this"));
}

void tst_SheetProgram::namesTheLargestDialThatFits()
{
    const ProgramRun result = run("-o x.pdf --paper A5 Clock.gauge Fuel.gauge=200");
    QCOMPARE(result.err, "corvalence-sheet: Fuel.gauge: A dial of 200 mm does not fit on a page; "
                         "the largest has 134.7 mm.\n"_ba);
    QCOMPARE(result.status, 1);
    QCOMPARE(run("-o x.pdf --paper A5 Fuel.gauge=134.7").status, 0);
    QVERIFY(run("-o y.pdf --drill 3@500,0 Fuel.gauge").err.contains("with these marks none does"));
}

void tst_SheetProgram::replacesOnlyWhenTold()
{
    write(u"x.pdf"_s, "mine");
    const ProgramRun result = run("-o x.pdf Clock.gauge");
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err,
             "corvalence-sheet: x.pdf already exists (--overwrite replaces it, --keep keeps it).\n"_ba);
    QCOMPARE(run("-o x.pdf --keep Clock.gauge").status, 0);
    QCOMPARE(read(u"x.pdf"_s), "mine"_ba);
    QCOMPARE(run("-o x.pdf --overwrite Clock.gauge").status, 0);
    QVERIFY(read(u"x.pdf"_s).startsWith("%PDF-"));
}

void tst_SheetProgram::neverReplacesAGauge()
{
    const QByteArray gauge = read(u"Fuel.gauge"_s);
    const ProgramRun result = run("-o ./Fuel.gauge --overwrite Clock.gauge Fuel.gauge");
    QCOMPARE(result.err, "corvalence-sheet: ./Fuel.gauge is a gauge of the sheet and is not replaced.\n"_ba);
    QCOMPARE(result.status, 1);
    QCOMPARE(read(u"Fuel.gauge"_s), gauge);
}

void tst_SheetProgram::onlyTellsInADryRun()
{
    const ProgramRun result = run("-o x.pdf --dry-run Clock.gauge Fuel.gauge");
    QCOMPARE(result.out, "x.pdf: 2 dials on 1 page\n"_ba);
    QCOMPARE(files(), QStringList({u"Clock.gauge"_s, u"Fuel.gauge"_s}));
}

void tst_SheetProgram::drawsAnyNumbers()
{
    gaugeLayer huge{u"Huge"_s, {}};
    huge.data.startAngle = 1e300;
    huge.data.divisionCount = {4, 2, 2};
    huge.data.divisionInnerRadius = {-1e300, 1e30, 1e9};
    huge.data.divisionLineWidth = {1e300, -1e300, 1e9};
    huge.data.arcRadius = {1e300, -1e300, 1e9, 0.0};
    huge.data.arcAngleLength = {1e300, -1e300, 1e9, 1e-300};
    huge.data.arcWidth = {1e300, 1e9, -1.0, 1e300};
    huge.data.tickCountStart = 1e308;
    huge.data.tickCountIncrement = 1e308;
    huge.data.tickCountDecimalPlaces = maxInt;
    huge.data.tickCountRadius = 1e300;
    huge.data.tickCountFont.setPointSizeF(1e9);
    huge.data.tickCountRotate = true;
    write(u"huge.gauge"_s, gaugeFile::write({huge}));
    for (const char *fonts : {"paths", "embed"}) {
        const ProgramRun result = run("-o x.pdf --overwrite huge.gauge --fonts "_ba.append(fonts));
        QCOMPARE(result.err, QByteArray());
        QCOMPARE(result.status, 0);
    }
}

void tst_SheetProgram::refusesTooLargeASheet()
{
    gaugeLayer layer{u"Layer"_s, {}};
    layer.data.divisionCount[0] = 1'000'000;
    layer.data.tickCountDecimalPlaces = 100;
    write(u"large.gauge"_s, gaugeFile::write({layer}));
    const ProgramRun result = run("-o x.pdf Clock.gauge large.gauge");
    QCOMPARE(result.err, "corvalence-sheet: The PDF would be larger than 1 GiB.\n"_ba);
    QCOMPARE(result.status, 1);
    QVERIFY(!files().contains(u"x.pdf"_s));
}

ADD_TEST_CLASS(tst_SheetProgram)
#include "tst_sheetprogram.moc"
