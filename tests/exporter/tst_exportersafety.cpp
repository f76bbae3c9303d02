#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/namedvalues.h"
#include "support/records.h"
#include "support/testmain.h"
#include "tools/inputfile.h"
#include "tools/outputfile.h"

#include <QDir>
#include <QScopeGuard>
#include <QTest>

#include <atomic>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

/// The exporter loses and damages no files.
class tst_ExporterSafety : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void reportsAFullDisk_data();
    void reportsAFullDisk();
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
    void ignoresTheUsersScreenSettings();
    void refusesNamesThatAreNotUtf8();
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
    gaugeData extreme = sampleLayer();
    extreme.startAngle = -1e300;
    extreme.divisionCount = {-maxInt - 1, maxInt, 0};
    extreme.divisionLineWidth[0] = infinity;
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
    QCOMPARE(result.err.contains(output + " is one of the input files and is not replaced."),
             !output.isEmpty());
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
    // A copy: the user that runs it may have no access to the build folder.
    const QString copy = path(u"copy of the exporter"_s);
    QVERIFY(QFile::copy(QStringLiteral(CORVALENCE_EXPORT), copy));
    const QStringList before = files();
    const QStringList arguments = words(QTest::currentDataTag());
    // An exporter that fails this test must not be able to replace the devices of the machine.
    QCOMPARE(chmod(qPrintable(path({})), 0777), 0);
    const RunConditions unprivileged{.before =
                                         [] {
                                             constexpr uid_t nobody = 65534;
                                             if (geteuid() == 0 && setuid(nobody) != 0)
                                                 _exit(1);
                                         },
                                     .program = copy};
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

ADD_TEST_CLASS(tst_ExporterSafety)
#include "tst_exportersafety.moc"
