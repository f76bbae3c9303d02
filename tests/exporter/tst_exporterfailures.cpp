#include "exporterrun.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

/// What the exporter says and does when a command line or a gauge is at fault.
class tst_ExporterFailures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        failOnUnexpectedWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
        m_gauge = writeGauge(path("Dial.gauge"));
    }

    void refusesWrongUsage_data();
    void refusesWrongUsage();
    void namesGaugeAndReason_data();
    void namesGaugeAndReason();
    void namesStandardInputAndReason();
    void makesTheOthers();
    void tellsOneLineForAGauge();
    void keepsAStrangeNameOnOneLine();
    void refusesASecondGaugeOfTheSameName();
    void refusesLayersThatAreNotThere_data();
    void refusesLayersThatAreNotThere();
    void countsAllTicks_data();
    void countsAllTicks();
    void refusesMoreTicksThanTheDefault();
    void countsOnlyTheTicksOfTheLayersTaken();
    void leavesNothingHalfWritten();
    void leavesNothingHalfWrittenUnderTheNameGiven();
    void tellsAboutAFolderThatCannotBeMade();

private:
    [[nodiscard]] QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    [[nodiscard]] ExporterRun run(const QStringList &arguments) const
    {
        return runExporter(arguments, {.folder = m_folder->path()});
    }
    /// A gauge of one layer with these counts on a partial or full sweep.
    void writeCounts(int primary, int secondary, int tertiary, double length) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_gauge;
};

void tst_ExporterFailures::refusesWrongUsage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("reason");
    const auto row = [](const char *title, const QStringList &arguments, const QByteArray &reason) {
        QTest::newRow(title) << arguments << reason;
    };
    const QString dial = u"Dial.gauge"_s;
    row("no file", {}, "no gauge file is named");
    row("an empty name", {dial, QString()}, "a file has an empty name");
    row("an unknown option", {u"--nonsense"_s, dial}, "Unknown option 'nonsense'.");
    row("an option without its value", {dial, u"--size"_s}, "Missing value after '--size'.");
    row("an unknown format", {u"-f"_s, u"png,gif"_s, dial},
        "\"gif\" is not a format; it may be png, svg, pdf, csv or gauge");
    row("no format", {u"-f"_s, QString(), dial},
        "\"\" is not a format; it may be png, svg, pdf, csv or gauge");
    row("a size below the smallest", {u"-s"_s, u"63"_s, dial}, "the size must lie from 64 to 16384 pixels");
    row("a size above the largest", {u"-s"_s, u"512,16385"_s, dial},
        "the size must lie from 64 to 16384 pixels");
    row("a size that is no number", {u"-s"_s, u"big"_s, dial}, "\"big\" is not a size");
    row("no size", {u"-s"_s, u"64,"_s, dial}, "\"\" is not a size");
    row("a length that is no number", {u"--mm"_s, u"wide"_s, dial}, "\"wide\" is not a value for --mm");
    row("a length of nothing", {u"--mm"_s, u"0"_s, dial}, "\"0\" is not a value for --mm");
    row("a length without an end", {u"--mm"_s, u"inf"_s, dial}, "\"inf\" is not a value for --mm");
    row("a length too small", {u"--mm"_s, u"0.9"_s, dial},
        "the true side of the pictures must lie from 1 to 5000 mm");
    row("a length too large", {u"--mm"_s, u"5001"_s, dial},
        "the true side of the pictures must lie from 1 to 5000 mm");
    row("a negative density", {u"--dpi"_s, u"-96"_s, dial}, "\"-96\" is not a value for --dpi");
    row("a density that gives too small a side", {u"--dpi"_s, u"90000"_s, dial},
        "the true side of the pictures must lie from 1 to 5000 mm");
    row("side and density of too many pixels", {u"--mm"_s, u"5000"_s, u"--dpi"_s, u"300"_s, dial},
        "the size must lie from 64 to 16384 pixels");
    row("side and density of too few pixels", {u"--mm"_s, u"10"_s, u"--dpi"_s, u"96"_s, dial},
        "the size must lie from 64 to 16384 pixels");
    row("size, side and density", {u"-s"_s, u"64"_s, u"--mm"_s, u"50"_s, u"--dpi"_s, u"96"_s, dial},
        "--mm and --dpi together give the size; --size cannot be given too");
    row("no template", {u"-n"_s, QString(), dial}, "\"\" is not a name template");
    row("an unknown place", {u"-n"_s, u"{name}{colour}"_s, dial},
        "\"{name}{colour}\" is not a name template");
    row("a place that does not begin", {u"-n"_s, u"name}"_s, dial}, "\"name}\" is not a name template");
    row("a template of a folder", {u"-n"_s, u"{name}/"_s, dial}, "\"{name}/\" is not a name template");
    row("a template from the root", {u"-n"_s, u"/{name}"_s, dial}, "\"/{name}\" is not a name template");
    row("several sizes of one name", {u"-s"_s, u"64,128"_s, u"-n"_s, u"{name}"_s, dial},
        "the name template must hold {size} when there are several sizes");
    row("a size for a table", {u"-f"_s, u"csv"_s, u"-n"_s, u"{size}"_s, dial},
        "csv and gauge files have no size; the name template cannot hold {size}");
    row("an empty folder", {u"-o"_s, QString(), dial}, "the output folder has an empty name");
    row("overwrite and keep", {u"--overwrite"_s, u"--keep"_s, dial},
        "--overwrite and --keep exclude each other");
    row("no jobs", {u"-j"_s, u"0"_s, dial}, "\"0\" is not a value for --jobs");
    row("too many jobs", {u"-j"_s, u"1025"_s, dial}, "\"1025\" is not a value for --jobs");
    row("a broken number of ticks", {u"--tick-limit"_s, u"1e6"_s, dial},
        "\"1e6\" is not a value for --tick-limit");
    row("standard input and a file", {u"-"_s, dial}, "standard input (-) must be the only file");
    row("standard input in two formats", {u"-f"_s, u"png,svg"_s, u"-"_s},
        "standard input (-) is exported in one format and one size");
    row("standard input in two sizes", {u"-s"_s, u"64,128"_s, u"-"_s},
        "standard input (-) is exported in one format and one size");
    row("standard input into a folder", {u"-o"_s, u"out"_s, u"-"_s},
        "standard input (-) is written to standard output; it takes no folder or name");
    row("standard input with a name", {u"-n"_s, u"{name}"_s, u"-"_s},
        "standard input (-) is written to standard output; it takes no folder or name");
    row("standard input to a file", {u"--to"_s, u"face.png"_s, u"-"_s},
        "standard input (-) is written to standard output; it takes no folder or name");
    row("no name to write to", {u"--to"_s, QString(), dial}, "--to needs the name of a file");
    row("a name that means standard output", {u"--to"_s, u"-"_s, dial}, "--to needs the name of a file");
    const QByteArray oneOnly = "--to takes one gauge in one format and one size";
    row("one name for two gauges", {u"--to"_s, u"face"_s, dial, u"Other.gauge"_s}, oneOnly);
    row("one name for two formats", {u"--to"_s, u"face"_s, u"-f"_s, u"png,csv"_s, dial}, oneOnly);
    row("one name for two sizes", {u"--to"_s, u"face"_s, u"-s"_s, u"64,128"_s, dial}, oneOnly);
    const QByteArray wholeName = "--to says the whole name; --output and --name-template cannot be given too";
    row("a name and a folder", {u"--to"_s, u"face"_s, u"-o"_s, u"out"_s, dial}, wholeName);
    row("a name and a template", {u"--to"_s, u"face"_s, u"-n"_s, u"{name}"_s, dial}, wholeName);
}

void tst_ExporterFailures::refusesWrongUsage()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, reason);
    const ExporterRun result = run(arguments);
    QCOMPARE(result.err, "corvalence-export: " + reason + "\nSee corvalence-export --help.\n");
    QCOMPARE(result.status, 2);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(contents(m_folder->path()), QStringList{u"Dial.gauge"_s});
}

void tst_ExporterFailures::namesGaugeAndReason_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("reason");
    const QByteArray neither =
        "It is not valid JSON, and does not look like a gauge file from an earlier version either.";
    QTest::newRow("empty") << QByteArray(" \n ") << QByteArray("The file is empty.");
    QTest::newRow("no layers") << QByteArray(R"({"layers": []})")
                               << QByteArray("The file contains no layers.");
    QTest::newRow("broken") << QByteArray("{") << QByteArray("unterminated object");
    QTest::newRow("too few fields") << QByteArray(48, ',') << neither;
    QTest::newRow("something else") << QByteArray("hello") << neither;
}

void tst_ExporterFailures::namesGaugeAndReason()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, reason);
    writeFile(path("Bad.gauge"), bytes);
    const ExporterRun result = run({u"./Bad.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, "./Bad.gauge: " + reason + '\n');
    QCOMPARE(result.out, QByteArray());
}

void tst_ExporterFailures::namesStandardInputAndReason()
{
    const ExporterRun result = runExporter({u"-"_s}, {.input = "{}"});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, QByteArray("standard input: The file contains no layers.\n"));
    QCOMPARE(result.out, QByteArray());
}

void tst_ExporterFailures::makesTheOthers()
{
    writeFile(path("Bad.gauge"), "{");
    writeGauge(path("Last.gauge"));
    QVERIFY(QDir(m_folder->path()).mkdir(u"Folder.gauge"_s));
    const ExporterRun result = run({u"--jobs"_s, u"1"_s, u"--formats"_s, u"svg"_s, u"Gone.gauge"_s,
                                    u"Bad.gauge"_s, u"Dial.gauge"_s, u"Folder.gauge"_s, u"Last.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.out, QByteArray("Dial.svg\nLast.svg\n"));
    const QList<QByteArray> lines = result.err.split('\n');
    QCOMPARE(lines.size(), 4); // the last is what follows the last line feed
    QCOMPARE(lines.at(0), QByteArray("Gone.gauge: No such file or directory"));
    QCOMPARE(lines.at(1), QByteArray("Bad.gauge: unterminated object"));
    QVERIFY2(lines.at(2).startsWith("Folder.gauge: "), lines.at(2).constData());
}

void tst_ExporterFailures::tellsOneLineForAGauge()
{
    for (const char *name : {"Dial.png", "Dial.svg", "Dial.csv"})
        writeFile(path(name), "mine");
    const ExporterRun result = run({u"-f"_s, u"png,svg,csv"_s, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err.count('\n'), 1);
}

void tst_ExporterFailures::keepsAStrangeNameOnOneLine()
{
    const ExporterRun result = run({u"a\nb\x1b[31m.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, QByteArray("a?b?[31m.gauge: No such file or directory\n"));
}

void tst_ExporterFailures::refusesASecondGaugeOfTheSameName()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"a"_s));
    writeGauge(path("a/Dial.gauge"), {u"Other"_s});
    const ExporterRun result =
        run({u"-f"_s, u"csv"_s, u"-o"_s, u"out"_s, u"--overwrite"_s, u"Dial.gauge"_s, u"a/Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err,
             QByteArray("a/Dial.gauge: Its files would take the names of those of Dial.gauge.\n"));
    QVERIFY(readFile(path("out/Dial.csv")).contains("Dial,0,"));
}

void tst_ExporterFailures::refusesLayersThatAreNotThere_data()
{
    QTest::addColumn<QString>("layers");
    QTest::addColumn<QByteArray>("missing");
    QTest::newRow("a name") << u"Needle"_s << QByteArray("Needle");
    QTest::newRow("a name in other letters") << u"dial"_s << QByteArray("dial");
    QTest::newRow("zero") << u"0"_s << QByteArray("0");
    QTest::newRow("a number too large") << u"2"_s << QByteArray("2");
    QTest::newRow("one of several") << u"Dial, 7 ,1"_s << QByteArray("7");
    QTest::newRow("nothing") << u""_s << QByteArray("");
}

void tst_ExporterFailures::refusesLayersThatAreNotThere()
{
    QFETCH(const QString, layers);
    QFETCH(const QByteArray, missing);
    const ExporterRun result = run({u"--layers"_s, layers, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, "Dial.gauge: There is no layer \"" + missing + "\".\n");
}

void tst_ExporterFailures::writeCounts(int primary, int secondary, int tertiary, double length) const
{
    gaugeData data;
    data.divisionCount = {primary, secondary, tertiary};
    data.angleLength = length;
    data.tickCountEnabled = false;
    writeFile(path("Counts.gauge"), gaugeFile::write({{u"Counts"_s, data}}));
}

void tst_ExporterFailures::countsAllTicks_data()
{
    QTest::addColumn<int>("primary");
    QTest::addColumn<int>("secondary");
    QTest::addColumn<int>("tertiary");
    QTest::addColumn<double>("length");
    QTest::addColumn<QString>("ticks");
    // Two gaps, each with two marks between its three parts, and in each part three more.
    QTest::newRow("three rings") << 2 << 3 << 4 << 120.0 << u"25"_s; // 3 + 2 * (2 + 3 * 3)
    QTest::newRow("three rings, full circle") << 2 << 3 << 4 << 360.0 << u"24"_s;
    QTest::newRow("backwards full circle") << 2 << 3 << 4 << -360.0 << u"24"_s;
    QTest::newRow("two rings") << 10 << 5 << 1 << 120.0 << u"51"_s; // 11 + 10 * 4
    QTest::newRow("tertiary without secondary") << 10 << 1 << 5 << 120.0 << u"11"_s;
    QTest::newRow("negative tertiary") << 10 << 2 << -5 << 120.0 << u"21"_s;
    constexpr int most = std::numeric_limits<int>::max();
    QTest::newRow("the largest first ring") << most << 1 << 1 << 120.0 << u"2,147,483,648"_s;
    // One primary tick, and twice 2^31 - 1 parts of the circle with a mark between each and the next.
    QTest::newRow("many secondary ticks") << 1 << most << 2 << 360.0 << u"4,294,967,294"_s;
    // More than any number of the program holds: the largest one stands for it.
    QTest::newRow("the largest of all") << most << most << most << 120.0 << u"18,446,744,073,709,551,615"_s;
}

void tst_ExporterFailures::countsAllTicks()
{
    QFETCH(const int, primary);
    QFETCH(const int, secondary);
    QFETCH(const int, tertiary);
    QFETCH(const double, length);
    QFETCH(const QString, ticks);
    writeCounts(primary, secondary, tertiary, length);
    const ExporterRun result = run({u"--tick-limit"_s, u"10"_s, u"Counts.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, "Counts.gauge: It has " + ticks.toLatin1() +
                             " ticks, more than the limit of 10 (--tick-limit raises it).\n");

    QString plain = ticks;
    const qulonglong count = plain.remove(u',').toULongLong();
    if (count < 100)
        QCOMPARE(run({u"--tick-limit"_s, plain, u"Counts.gauge"_s}).status, 0);
}

void tst_ExporterFailures::refusesMoreTicksThanTheDefault()
{
    writeCounts(10'000'000, 1, 1, 120.0); // and one that closes the sweep
    const ExporterRun result =
        run({u"-f"_s, u"png,svg,pdf,csv,gauge"_s, u"-o"_s, u"out"_s, u"Counts.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err,
             QByteArray("Counts.gauge: It has 10,000,001 ticks, more than the limit of 10,000,000 "
                        "(--tick-limit raises it).\n"));
    QVERIFY(!QFile::exists(path("out")));
}

void tst_ExporterFailures::countsOnlyTheTicksOfTheLayersTaken()
{
    gaugeData many;
    many.divisionCount[0] = std::numeric_limits<int>::max();
    gaugeData few;
    few.divisionCount[0] = 9;
    writeFile(path("Two.gauge"), gaugeFile::write({{u"Many"_s, many}, {u"Few"_s, few}, {u"Few too"_s, few}}));
    // Together the two layers have 20 ticks.
    QCOMPARE(run({u"-l"_s, u"Few,Few too"_s, u"--tick-limit"_s, u"20"_s, u"Two.gauge"_s}).status, 0);
    QCOMPARE(run({u"-l"_s, u"Few,Few too"_s, u"--tick-limit"_s, u"19"_s, u"Two.gauge"_s}).status, 1);
}

void tst_ExporterFailures::leavesNothingHalfWritten()
{
    // A folder stands where the picture would go.
    QVERIFY(QDir(m_folder->path()).mkpath(u"out/Dial.png"_s));
    const ExporterRun result = run({u"--overwrite"_s, u"-o"_s, u"out"_s, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.err.startsWith("Dial.gauge: out/Dial.png: "), result.err.constData());
    QCOMPARE(contents(path("out")), QStringList{u"Dial.png"_s});
}

void tst_ExporterFailures::leavesNothingHalfWrittenUnderTheNameGiven()
{
    QVERIFY(QDir(m_folder->path()).mkpath(u"out/face"_s));
    const ExporterRun result = run({u"--overwrite"_s, u"--to"_s, u"out/face"_s, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QVERIFY2(result.err.startsWith("Dial.gauge: out/face: "), result.err.constData());
    QCOMPARE(contents(path("out")), QStringList{u"face"_s});
}

void tst_ExporterFailures::tellsAboutAFolderThatCannotBeMade()
{
    writeFile(path("out"), "a file");
    const ExporterRun result = run({u"-o"_s, u"out"_s, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, QByteArray("Dial.gauge: The folder out cannot be made.\n"));
}

ADD_TEST_CLASS(tst_ExporterFailures)
#include "tst_exporterfailures.moc"
