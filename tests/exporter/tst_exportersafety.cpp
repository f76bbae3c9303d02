#include "exporter/inputfile.h"
#include "exporter/outputfile.h"
#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/records.h"
#include "support/testmain.h"

#include <QDir>
#include <QScopeGuard>
#include <QTest>

#include <array>
#include <limits>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr rlim_t MiB = rlim_t(1024) * 1024;

/// Sets a limit in the new process. Files that grow beyond it fail as on a full disk.
std::function<void()> withLimit(int resource, rlim_t value)
{
    return [resource, value] {
        const rlimit limit{value, value};
        setrlimit(static_cast<__rlimit_resource>(resource), &limit);
    };
}

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

QByteArray gaugeOf(const gaugeData &data, qsizetype layerCount = 1, const QString &name = u"Layer"_s)
{
    return gaugeFile::write(QList<gaugeLayer>(layerCount, gaugeLayer{name, data}));
}

QByteArray gaugeOfTicks(int count)
{
    gaugeData data;
    data.divisionCount[0] = count;
    return gaugeOf(data);
}

} // namespace

/// The exporter loses no files, always ends, and says what it cannot do.
class tst_ExporterSafety : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void reportsAFullDisk_data();
    void reportsAFullDisk();
    void reportsWhenStandardOutputTakesNothing_data();
    void reportsWhenStandardOutputTakesNothing();
    void refusesWhatIsNoGauge_data();
    void refusesWhatIsNoGauge();
    void exportsNothingOfWhatIsNoGauge();
    void acceptsWhatEarlierVersionsWrote();
    void replacesNoInput_data();
    void replacesNoInput();
    void replacesOnlyRegularFiles_data();
    void replacesOnlyRegularFiles();
    void writesTogetherWithOtherExporters_data();
    void writesTogetherWithOtherExporters();
    void worksWithFewThreads_data();
    void worksWithFewThreads();
    void reportsTooLittleMemory();
    void ignoresTheUsersScreenSettings();
    void opensClosedStreams();
    void limitsInput();
    void limitsTicksAndArcs();
    void countsOnlySelectedLayers();
    void limitsTheSizeOfOutputs_data();
    void limitsTheSizeOfOutputs();
    void refusesNamesThatAreNotUtf8();
    void thumbnailsAreBounded_data();
    void thumbnailsAreBounded();
};

void tst_ExporterSafety::reportsAFullDisk_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<bool>("isLarge");
    for (const char *format : {"png", "svg", "pdf", "csv", "gauge"}) {
        QTest::addRow("small %s", format) << QString::fromLatin1(format) << false;
        QTest::addRow("large %s", format) << QString::fromLatin1(format) << true;
    }
}

void tst_ExporterSafety::reportsAFullDisk()
{
    QFETCH(const QString, format);
    QFETCH(const bool, isLarge);
    if (isLarge) { // larger than any buffer
        gaugeData data;
        data.divisionCount[0] = 300;
        write(u"Dial.gauge"_s, gaugeOf(data, 20));
    }
    const QStringList arguments{u"-f"_s, format, u"-s"_s, isLarge ? u"2048"_s : u"64"_s};
    const ExporterRun complete = run(arguments + words("-"), {.standardInput = path(u"Dial.gauge"_s)});
    const auto size = static_cast<rlim_t>(complete.out.size());
    QCOMPARE(complete.status, 0);
    QCOMPARE(size > 32768, isLarge);

    const QString file = u"out/Dial."_s + format;
    for (const rlim_t limit : {rlim_t(0), size / 2, size - 1}) {
        write(file, "old");
        const ExporterRun failed = run(arguments + words("--overwrite -o out Dial.gauge"),
                                       {.before = withLimit(RLIMIT_FSIZE, limit)});
        QCOMPARE(failed.err, "Dial.gauge: " + file.toUtf8() + ": File too large\n");
        QCOMPARE(failed.status, 1);
        QCOMPARE(read(file), QByteArray("old"));
        QCOMPARE(contents(path(u"out"_s)), QStringList{u"Dial."_s + format});

        const ExporterRun stream = run(arguments + words("-"), {.standardInput = path(u"Dial.gauge"_s),
                                                                .standardOutput = path(u"stream"_s),
                                                                .before = withLimit(RLIMIT_FSIZE, limit)});
        QCOMPARE(stream.err, QByteArray("standard input: Standard output: File too large\n"));
        QCOMPARE(stream.status, 1);
    }
    QCOMPARE(
        run(arguments + words("--overwrite -o out Dial.gauge"), {.before = withLimit(RLIMIT_FSIZE, size)})
            .status,
        0);
    QCOMPARE(read(file).size(), static_cast<qsizetype>(size));
}

void tst_ExporterSafety::reportsWhenStandardOutputTakesNothing_data()
{
    QTest::addColumn<RunConditions>("conditions");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("full") << RunConditions{.standardOutput = u"/dev/full"_s}
                          << QByteArray("Standard output: No space left on device\n");
    QTest::newRow("closed") << RunConditions{.before = [] { close(STDOUT_FILENO); }}
                            << QByteArray("Standard output is closed.\n");
    const auto closePipe = [] {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0 || dup2(ends[1], STDOUT_FILENO) < 0)
            _exit(1);
        close(ends[0]);
    };
    QTest::newRow("closed pipe") << RunConditions{.before = closePipe}
                                 << QByteArray("Standard output: Broken pipe\n");
}

void tst_ExporterSafety::reportsWhenStandardOutputTakesNothing()
{
    QFETCH(const RunConditions, conditions);
    QFETCH(const QByteArray, reason);
    const QByteArray program = "corvalence-export: ";
    const QList<std::pair<const char *, QByteArray>> runs{
        {"--help", program},
        {"--version", program},
        {"--dry-run Dial.gauge", program},
        {"-f csv,svg Dial.gauge", program},
        {"-f csv --to /dev/stdout Dial.gauge", "Dial.gauge: "},
    };
    for (const auto &[arguments, subject] : runs) {
        const ExporterRun result = run(arguments, conditions);
        QCOMPARE(result.err, subject + reason);
        QCOMPARE(result.status, 1);
    }
    QCOMPARE(files(), QStringList({u"Dial.csv"_s, u"Dial.gauge"_s, u"Dial.svg"_s}));
    QCOMPARE(run("-q -f pdf Dial.gauge", conditions).status, 0); // prints nothing
}

void tst_ExporterSafety::refusesWhatIsNoGauge_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("reason");
    const QByteArray older = gaugeData().toQString().toUtf8();
    const QByteArray notOlder = "It is not a gauge: it is neither JSON nor the older form.";
    const auto changed = [&older](qsizetype field, const QByteArray &value) {
        QByteArrayList fields = older.split(',');
        fields[field] = value;
        return fields.join(',');
    };
    QTest::newRow("50 empty fields") << QByteArray(49, ',') << notOlder;
    QTest::newRow("NUL bytes") << older + QByteArray(1, '\0')
                               << QByteArray("It is not a gauge: it holds NUL bytes.");
    for (const char *mark : {"\xef\xbb\xbf", "\xff\xfe", "\xfe\xff"}) {
        QTest::addRow("mark %s", QByteArray(mark).toHex().constData())
            << mark + older << QByteArray("It is not a gauge: it begins with a byte-order mark.");
    }
    QTest::newRow("an array") << '[' + older << QByteArray("It is not a gauge: it begins with \"[\".");
    for (const int number : {0, 1, 2}) {
        for (const char *value : {"x", "", "nan", "inf", "1e999"})
            QTest::addRow("number %d %s", number, value) << changed(number, value) << notOlder;
    }
    for (const int flag : {3, 4, 20, 41, 46, 47}) {
        for (const char *value : {"2", "-1", "", "yes"})
            QTest::addRow("flag %d %s", flag, value) << changed(flag, value) << notOlder;
    }
    for (const int count : {5, 6, 7, 44}) {
        for (const char *value : {"1.5", "", "x", "2147483648"})
            QTest::addRow("count %d %s", count, value) << changed(count, value) << notOlder;
    }
    QTest::newRow("too many layers") << R"({"layers":[)" + QByteArray("0,").repeated(100'000) + "0]}"
                                     << QByteArray("It has 100001 layers, more than the limit of 100000.");
}

void tst_ExporterSafety::refusesWhatIsNoGauge()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, reason);
    QCOMPARE(checkIsGauge(bytes).toUtf8(), reason);
}

void tst_ExporterSafety::exportsNothingOfWhatIsNoGauge()
{
    write(u"table.csv"_s, QByteArray("Layer,Tick,Angle\r").repeated(30));
    const ExporterRun result = run("--overwrite -f svg table.csv");
    QCOMPARE(result.err,
             QByteArray("table.csv: It is not a gauge: it is neither JSON nor the older form.\n"));
    QCOMPARE(result.status, 1);
    QCOMPARE(files(), QStringList({u"Dial.gauge"_s, u"table.csv"_s}));
}

void tst_ExporterSafety::acceptsWhatEarlierVersionsWrote()
{
    constexpr int maxInt = std::numeric_limits<int>::max();
    gaugeData extreme = sampleLayer();
    extreme.startAngle = -1e300;
    extreme.divisionCount = {-maxInt - 1, maxInt, 0};
    extreme.divisionLineWidth[0] = std::numeric_limits<double>::infinity();
    extreme.tickCountDecimalPlaces = maxInt;
    extreme.tickCountColor = QColor();
    for (const gaugeData &data : {gaugeData(), sampleLayer(), sampleLayer(1), extreme}) {
        write(u"Older.gauge"_s, data.toQString().toUtf8());
        const ExporterRun result = run("-f gauge --overwrite Older.gauge");
        QCOMPARE(result.err, QByteArray());
        gaugeData read;
        QVERIFY(read.fromQString(data.toQString()));
        QCOMPARE(this->read(u"Older.gauge"_s), gaugeOf(read, 1, u"Older"_s));
    }
}

void tst_ExporterSafety::replacesNoInput_data()
{
    QTest::addColumn<QByteArray>("output");
    const auto row = [](const char *arguments, const QByteArray &output) {
        QTest::newRow(arguments) << output;
    };
    row("--to Dial.gauge -f png ./Dial.gauge", "Dial.gauge");
    row("--to ./a/../Dial.gauge -f png Dial.gauge", "./a/../Dial.gauge");
    row("--to symlink.png Dial.gauge", "symlink.png");
    row("--to hardlink.png Dial.gauge", "hardlink.png");
    row("--to Dial.gauge -f png symlink.png", "Dial.gauge");
    row("-j1 -f gauge -n hardlink Other.gauge hardlink.png", "hardlink.gauge");
    row("-j1 -f gauge --dry-run --to Dial.gauge symlink.png", {}); // the gauge itself
}

void tst_ExporterSafety::replacesNoInput()
{
    QFETCH(const QByteArray, output);
    QDir().mkdir(path(u"a"_s));
    writeGauge(u"Other.gauge"_s);
    const QByteArray before = read(u"Dial.gauge"_s);
    QFile::link(u"Dial.gauge"_s, path(u"symlink.png"_s));
    for (const QString &name : {u"hardlink.png"_s, u"hardlink.gauge"_s})
        QCOMPARE(::link(qPrintable(path(u"Dial.gauge"_s)), qPrintable(path(name))), 0);
    const ExporterRun result = run(words("--overwrite") + words(QTest::currentDataTag()));
    QCOMPARE(result.err.contains(output + " is a gauge to export and is not replaced."), !output.isEmpty());
    QCOMPARE(result.status, output.isEmpty() ? 0 : 1);
    QCOMPARE(read(u"Dial.gauge"_s), before);
}

void tst_ExporterSafety::replacesOnlyRegularFiles_data()
{
    QTest::addColumn<QByteArray>("err");
    const auto row = [](const char *arguments, const QByteArray &err) { QTest::newRow(arguments) << err; };
    row("--to fifo -f png Dial.gauge", "fifo is not a regular file.");
    row("--to device -f png Dial.gauge", "device is not a regular file.");
    row("--to dangling -f png Dial.gauge", "dangling is a link to a file that does not exist.");
    row("--to /dev/null -f png Dial.gauge", {});
}

void tst_ExporterSafety::replacesOnlyRegularFiles()
{
    QFETCH(const QByteArray, err);
    QCOMPARE(mkfifo(qPrintable(path(u"fifo"_s)), 0600), 0);
    QFile::link(u"/dev/full"_s, path(u"device"_s));
    QFile::link(u"nothing"_s, path(u"dangling"_s));
    const QStringList before = files();
    const QStringList arguments = words(QTest::currentDataTag());
    // An exporter that fails this test must not be able to replace the devices of the machine.
    QCOMPARE(chmod(qPrintable(path({})), 0777), 0);
    const RunConditions unprivileged{.before = [] {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && setuid(nobody) != 0)
            _exit(1);
    }};
    const ExporterRun result = run(words("--overwrite") + arguments, unprivileged);
    QCOMPARE(result.err, err.isEmpty() ? err : "Dial.gauge: " + err + '\n');
    QCOMPARE(run(arguments, unprivileged).err, result.err); // also without --overwrite
    QCOMPARE(files(), before);

    const QByteArray picture = run("-f svg -", {.input = read(u"Dial.gauge"_s)}).out;
    QCOMPARE(run("-f svg --to /dev/stdout Dial.gauge").out, picture);
    write(u"log"_s, {});
    QCOMPARE(run("-f svg --to /dev/stdout Dial.gauge", {.standardOutput = path(u"log"_s)}).status, 0);
    QCOMPARE(read(u"log"_s), picture);
}

void tst_ExporterSafety::writesTogetherWithOtherExporters_data()
{
    QTest::addColumn<ExistingFile>("existing");
    QTest::addColumn<int>("expectedCount");
    QTest::newRow("never writes a new file twice") << ExistingFile::Refuse << 1;
    QTest::newRow("keeps a new file") << ExistingFile::Keep << 1;
    QTest::newRow("overwrites a new file") << ExistingFile::Overwrite << 4;
}

void tst_ExporterSafety::writesTogetherWithOtherExporters()
{
    QFETCH(const ExistingFile, existing);
    QFETCH(const int, expectedCount);
    for (int round = 0; round < 100; ++round) {
        const QString file = path(u"out/"_s + QString::number(round));
        std::atomic<int> writtenCount = 0;
        std::vector<std::thread> threads;
        for (char content = 'a'; content < 'e'; ++content) {
            threads.emplace_back([&writtenCount, existing, file, content] {
                const QByteArray bytes(1000, content);
                const WriteResult result = writeOutputFile(file, bytes, existing);
                writtenCount += result.written ? 1 : 0;
                if (result.written && existing != ExistingFile::Overwrite && readFile(file) != bytes)
                    qFatal("another thread replaced the file");
            });
        }
        for (std::thread &thread : threads)
            thread.join();
        QCOMPARE(writtenCount, expectedCount);
    }
    QCOMPARE(contents(path(u"out"_s)).size(), 100); // no temporary files
}

void tst_ExporterSafety::worksWithFewThreads_data()
{
    QTest::addColumn<int>("resource");
    QTest::addColumn<quint64>("stack"); // of each thread, in MiB
    QTest::newRow("few threads") << int(RLIMIT_AS) << quint64(700);
    QTest::newRow("no thread") << int(RLIMIT_AS) << quint64(100'000);
    QTest::newRow("few open files") << int(RLIMIT_NOFILE) << quint64(8);
}

void tst_ExporterSafety::worksWithFewThreads()
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
                              ? "Dial.gauge: The png cannot be made: the system starts no more threads.\n"
                              : QByteArray());
}

void tst_ExporterSafety::reportsTooLittleMemory()
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

void tst_ExporterSafety::ignoresTheUsersScreenSettings()
{
    const QByteArray picture = run("-", {.input = read(u"Dial.gauge"_s)}).out;
    QMap<QString, QString> environment{{u"QT_QPA_PLATFORM"_s, u"no-such-platform"_s},
                                       {u"QT_QPA_PLATFORMTHEME"_s, u"gtk3"_s},
                                       {u"QT_FONT_DPI"_s, u"200"_s},
                                       {u"QT_SCALE_FACTOR"_s, u"2"_s},
                                       {u"QT_SCREEN_SCALE_FACTORS"_s, u"3"_s},
                                       {u"QT_USE_PHYSICAL_DPI"_s, u"1"_s}};
    const ExporterRun result = run("-", {.input = read(u"Dial.gauge"_s), .environment = environment});
    QCOMPARE(result.err, QByteArray());
    QVERIFY(result.out == picture);
    QCOMPARE(run("-platform xcb Dial.gauge").status, 2);
    QVERIFY(run("-", {.input = read(u"Dial.gauge"_s), .environment = {{u"LC_ALL"_s, u"C"_s}}}).out ==
            picture);
}

void tst_ExporterSafety::opensClosedStreams()
{
    const auto closeStreams = [] {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            close(stream);
    };
    QStringList arguments = words("-j 4 -f csv -o out");
    for (int number = 0; number < 40; ++number) {
        arguments << u"Gone.gauge"_s << QString::number(number) + u".gauge"_s;
        writeGauge(arguments.constLast());
    }
    QCOMPARE(run(arguments, {.before = closeStreams}).status, 1);
    QCOMPARE(contents(path(u"out"_s)).size(), 40);
    for (const QString &file : contents(path(u"out"_s)))
        QVERIFY(read(u"out/"_s + file).endsWith(",240\r") ||
                read(u"out/"_s + file).startsWith("Layer,Tick,Angle\rDial,0,"));
}

void tst_ExporterSafety::limitsInput()
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

void tst_ExporterSafety::limitsTicksAndArcs()
{
    // The rules for ticks are those of totalTickCount(), which has tests of its own.
    constexpr int maxInt = std::numeric_limits<int>::max();
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

void tst_ExporterSafety::countsOnlySelectedLayers()
{
    writeGauge(u"Two.gauge"_s, {u"Few"_s, u"More"_s}); // 4 and 5 ticks, each with an arc
    QCOMPARE(run("-l Few --tick-limit 5 -f csv Two.gauge").status, 0);
    QCOMPARE(run("-l Few --tick-limit 4 -f svg Two.gauge").status, 1);
}

void tst_ExporterSafety::limitsTheSizeOfOutputs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("decimals");
    QTest::newRow("-f csv") << QString(2048, u'n') << 0;
    QTest::newRow("-f svg") << u"n"_s << 30;
    QTest::newRow("-f svg --text-as-paths") << u"n"_s << 0;
    QTest::newRow("-f pdf --text-as-paths") << u"n"_s << 2;
}

void tst_ExporterSafety::limitsTheSizeOfOutputs()
{
    QFETCH(const QString, name);
    QFETCH(const int, decimals);
    gaugeData data;
    data.divisionCount[0] = 1'000'000;
    data.tickCountDecimalPlaces = decimals;
    write(u"Large.gauge"_s, gaugeOf(data, 1, name));
    const QStringList options = words(QTest::currentDataTag());
    QCOMPARE(run(options + words("Large.gauge")).err,
             "Large.gauge: The " + options.at(1).toUtf8() + " would be larger than 1 GiB.\n");
}

void tst_ExporterSafety::refusesNamesThatAreNotUtf8()
{
    // QProcess encodes its arguments in UTF-8, a shell does not.
    const QByteArray name = "D\xe4l.gauge";
    const QByteArray file = QFile::encodeName(path({})) + '/' + name;
    QCOMPARE(::link(qPrintable(path(u"Dial.gauge"_s)), file.constData()), 0);
    const auto removeFile = qScopeGuard([&file] { unlink(file.constData()); }); // QTemporaryDir cannot
    const ExporterRun result =
        run({u"-c"_s, u"exec \"$0\" -q -f csv D*l.gauge"_s, QStringLiteral(CORVALENCE_EXPORT)},
            {.environment = {{u"LC_ALL"_s, u"C"_s}}, .program = u"/bin/sh"_s});
    QCOMPARE(result.err, QByteArray("D\xef\xbf\xbdl.gauge: Its name is not UTF-8.\n"));
    QCOMPARE(result.status, 1);
    QVERIFY(QFile::exists(path(u"Dial.csv"_s)));
    writeGauge(u"Uhr \u00fc \U0001f550.gauge"_s);
    QCOMPARE(
        run({u"-q"_s, u"-fcsv"_s, u"Uhr \u00fc \U0001f550.gauge"_s}, {.environment = {{u"LC_ALL"_s, u"C"_s}}})
            .status,
        0);
    QVERIFY(QFile::exists(path(u"Uhr \u00fc \U0001f550.csv"_s)));
}

void tst_ExporterSafety::thumbnailsAreBounded_data()
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

void tst_ExporterSafety::thumbnailsAreBounded()
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

ADD_TEST_CLASS(tst_ExporterSafety)
#include "tst_exportersafety.moc"
