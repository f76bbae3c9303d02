#include "exporterrun.h"
#include "model/gaugedata.h"
#include "support/namedvalues.h"
#include "support/testmain.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr rlim_t MiB = rlim_t(1024) * 1024;

/// With AddressSanitizer no limit of memory leaves enough for it.
constexpr bool hasAddressSanitizer =
#if defined(__SANITIZE_ADDRESS__)
    true;
#elif defined(__has_feature)
    __has_feature(address_sanitizer);
#else
    false;
#endif

/// The processor time of all child processes that have ended.
double childrenSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec);
}

QByteArray gaugeOfTicks(int count)
{
    gaugeData data;
    data.divisionCount[0] = count;
    return gaugeOf(data);
}

} // namespace

/// The exporter ends with a reason when a limit of the system or its own is reached.
class tst_ExporterLimits : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void worksWithFewThreads_data();
    void worksWithFewThreads();
    void reportsTooLittleMemory();
    void limitsInput();
    void limitsTicksAndArcs();
    void countsOnlySelectedLayers();
    void limitsTheSizeOfOutputs_data();
    void limitsTheSizeOfOutputs();
    void thumbnailsAreBounded_data();
    void thumbnailsAreBounded();
};

void tst_ExporterLimits::worksWithFewThreads_data()
{
    QTest::addColumn<int>("resource");
    QTest::addColumn<quint64>("stack"); // of each thread, in MiB
    QTest::newRow("few threads") << int(RLIMIT_AS) << quint64(700);
    QTest::newRow("no thread") << int(RLIMIT_AS) << quint64(100'000);
    QTest::newRow("few open files") << int(RLIMIT_NOFILE) << quint64(8);
}

void tst_ExporterLimits::worksWithFewThreads()
{
    if (hasAddressSanitizer)
        QSKIP("AddressSanitizer needs more memory.");
    QFETCH(const int, resource);
    QFETCH(const quint64, stack);
    QStringList arguments = words("-q -j 300 -f svg,csv -o out");
    for (int number = 0; number < 300; ++number) {
        arguments.append(QString::number(number) + u".gauge"_s);
        writeGauge(arguments.constLast());
    }
    const auto limit = [resource, stack] {
        // The size of new threads' stacks.
        const rlimit stackLimit{stack * MiB, RLIM_INFINITY};
        setrlimit(RLIMIT_STACK, &stackLimit);
        withLimit(resource, resource == RLIMIT_AS ? 2500 * MiB : 48)();
    };
    const ExporterRun result = run(arguments, {.before = limit});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(contents(path(u"out"_s)).size(), 600);

    const ExporterRun picture = run("-q Dial.gauge", {.before = limit});
    const bool noThread = stack == 100'000;
    QCOMPARE(picture.err, noThread
                              ? "Dial.gauge: The png cannot be made: the system cannot start more threads.\n"
                              : QByteArray());
}

void tst_ExporterLimits::reportsTooLittleMemory()
{
    if (hasAddressSanitizer)
        QSKIP("AddressSanitizer needs more memory.");
    write(u"Huge.gauge"_s, gaugeOfTicks(5'000'000));
    const auto limit = withLimit(RLIMIT_AS, 700 * MiB);
    const ExporterRun result = run("-j 1 -s 16384 -f png,csv Dial.gauge", {.before = limit});
    QCOMPARE(result.err, QByteArray("Dial.gauge: The png cannot be made: there is not enough memory.\n"));
    QCOMPARE(result.out, QByteArray("Dial.csv\n"));
    const ExporterRun table = run("-j 1 -f csv Huge.gauge Dial.gauge -o out", {.before = limit});
    QCOMPARE(table.err, QByteArray("Huge.gauge: There is not enough memory.\n"));
    QCOMPARE(table.out, QByteArray("out/Dial.csv\n"));
    const ExporterRun stream = run("-s 16384 -", {.standardInput = path(u"Dial.gauge"_s), .before = limit});
    QCOMPARE(stream.err, QByteArray("standard input: The png cannot be made: there is not enough memory.\n"));
    QCOMPARE(stream.out, QByteArray());
}

void tst_ExporterLimits::limitsInput()
{
    QCOMPARE(mkfifo(qPrintable(path(u"fifo"_s)), 0600), 0);
    QFile sparse(path(u"sparse"_s));
    QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(2048) * MiB));
    write(u"wide"_s, read(u"Dial.gauge"_s) + QByteArray(MiB, ' '));
    QDir().mkdir(path(u"folder.x"_s));
    const ExporterRun result =
        run("-q -j 1 -f csv -o out --input-limit 1 fifo /dev/zero folder.x sparse wide "
            "/proc/self/mem");
    const QByteArray tooLarge = ": It is larger than 1 MiB (--input-limit raises this).\n";
    QCOMPARE(result.err, "fifo: It is not a regular file.\n/dev/zero: It is not a regular file.\n"
                         "folder.x: It is a folder.\nsparse" +
                             tooLarge + "wide" + tooLarge + "/proc/self/mem: Input/output error\n");
    QCOMPARE(result.status, 1);
    QCOMPARE(run("-q -f csv -o out wide").status, 0);
    QCOMPARE(run("--input-limit 1 -", {.standardInput = u"/dev/zero"_s}).err, "standard input" + tooLarge);
    QCOMPARE(run("-", {.standardInput = path({})}).err, QByteArray("standard input: Is a directory\n"));
}

void tst_ExporterLimits::limitsTicksAndArcs()
{
    // The rules for ticks are those of totalTickCount(), which has tests of its own.
    gaugeData data;
    data.divisionCount = {2, 3, 4};
    data.arcAngleLength = {10.0, 0.0, 10.0, 10.0}; // an arc without length is not drawn
    write(u"Few.gauge"_s, gaugeOf(data));
    data.divisionCount = {maxInt, maxInt, maxInt};
    write(u"Most.gauge"_s, gaugeOf(data));
    write(u"Many.gauge"_s, gaugeOfTicks(9'999'999)); // one more tick ends the sweep, and one arc
    const auto message = [](const QByteArray &file, const QByteArray &count, const QByteArray &limit) {
        return file + ": It has " + count + " ticks and arcs, more than the limit of " + limit +
               " (--tick-limit raises this).\n";
    };
    QCOMPARE(run("-f csv --tick-limit 28 Few.gauge").status, 0);
    QCOMPARE(run("--tick-limit 27 Few.gauge").err, message("Few.gauge", "28", "27"));
    QCOMPARE(run("--tick-limit 27 Most.gauge").err,
             message("Most.gauge", "18,446,744,073,709,551,615", "27"));
    QCOMPARE(run("-f csv Many.gauge").err, message("Many.gauge", "10,000,001", "10,000,000"));
}

void tst_ExporterLimits::countsOnlySelectedLayers()
{
    writeGauge(u"Two.gauge"_s, {u"Few"_s, u"More"_s}); // 4 and 5 ticks, each with an arc
    QCOMPARE(run("-l Few --tick-limit 5 -f csv Two.gauge").status, 0);
    QCOMPARE(run("-l Few --tick-limit 4 -f svg Two.gauge").status, 1);
}

void tst_ExporterLimits::limitsTheSizeOfOutputs_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<double>("length");
    const QString shortName = u"n"_s;
    QTest::newRow("a long name") << u"-f csv"_s << QString(2048, u'n') << 0 << 90.0;
    QTest::newRow("long angles") << u"-f csv"_s << QString(800, u'n') << 0 << 1e300;
    QTest::newRow("labels") << u"-f svg"_s << shortName << 30 << 90.0;
    QTest::newRow("labels as paths") << u"-f svg --text-as-paths"_s << shortName << 0 << 90.0;
    QTest::newRow("labels as paths in PDF") << u"-f pdf --text-as-paths"_s << shortName << 2 << 90.0;
}

void tst_ExporterLimits::limitsTheSizeOfOutputs()
{
    QFETCH(const QString, options);
    QFETCH(const QString, name);
    QFETCH(const int, decimals);
    QFETCH(const double, length);
    gaugeData data;
    data.divisionCount[0] = 1'000'000;
    data.tickCountDecimalPlaces = decimals;
    data.angleLength = length;
    write(u"Large.gauge"_s, gaugeOf(data, 1, name));
    const QStringList arguments = options.split(u' ');
    QCOMPARE(run(arguments + QStringList{u"Large.gauge"_s}).err,
             "Large.gauge: The " + arguments.at(1).toUtf8() + " file would be larger than 1 GiB.\n");
}

void tst_ExporterLimits::thumbnailsAreBounded_data()
{
    QTest::addColumn<QByteArray>("gauge");
    QTest::addColumn<bool>("isDrawn");
    gaugeData wide;
    wide.roundedTickCaps = true;
    wide.divisionCount[0] = 99'998;
    wide.divisionLineWidth[0] = 1e300;
    gaugeData arcs;
    arcs.divisionCount[0] = -1;
    arcs.arcAngleLength = {10, 10, 10, 10};
    QTest::newRow("usual gauge") << gaugeOf({}, 10) << true;
    QTest::newRow("many wide ticks") << gaugeOf(wide) << false;
    wide.divisionCount[0] = 19'000;
    QTest::newRow("fewer wide ticks") << gaugeOf(wide) << false;
    QTest::newRow("many arcs") << gaugeOf(arcs, 60'000) << false;
    QTest::newRow("many layers") << R"({"layers":[)" + QByteArray("0,").repeated(5'000'000) + "0]}" << false;
    QTest::newRow("sparse") << QByteArray() << false;
}

void tst_ExporterLimits::thumbnailsAreBounded()
{
    if (hasAddressSanitizer)
        QSKIP("AddressSanitizer needs more memory.");
    QFETCH(const QByteArray, gauge);
    QFETCH(const bool, isDrawn);
    write(u"in"_s, gauge);
    if (gauge.isEmpty())
        QVERIFY(QFile::resize(path(u"in"_s), qint64(2048) * MiB));

    QString command;
    for (const QByteArray &line :
         readFile(QStringLiteral(CORVALENCE_SOURCE "/packaging/desktop/corvalence.thumbnailer.in"))
             .split('\n')) {
        if (line.startsWith("Exec="))
            command = QString::fromUtf8(line.sliced(5));
    }
    command.replace(u"@exporter_in_command@"_s, QStringLiteral(CORVALENCE_EXPORT));
    command.replace(u"%s"_s, u"256"_s).replace(u"%i"_s, path(u"in"_s)).replace(u"%o"_s, path(u"out"_s));
    const double before = childrenSeconds();
    (void)run({u"-c"_s, command}, {.program = u"/bin/sh"_s});
    const double seconds = childrenSeconds() - before;
    QVERIFY2(seconds < 11.0, qPrintable(QString::number(seconds)));
    if (isDrawn)
        QVERIFY(read(u"out"_s).startsWith("\x89PNG"));
}

ADD_TEST_CLASS(tst_ExporterLimits)
#include "tst_exporterlimits.moc"
