#include "exporterrun.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#ifdef Q_OS_UNIX
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

/// Where the exporter's files go, what becomes of files that are there, and what the user is told.
class tst_ExporterFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        failOnUnexpectedWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
        m_gauge = writeGauge(path("Dial.gauge"));
    }

    void helpNamesEveryOption();
    void versionNamesProgramAndVersion();
    void writesBesideEachGauge();
    void makesTheOutputFolder();
    void fillsTheNameTemplate_data();
    void fillsTheNameTemplate();
    void writesToTheNameGiven_data();
    void writesToTheNameGiven();
    void makesTheFolderOfTheNameGiven();
    void refusesAnExistingFileOfTheNameGiven();
    void overwritesAnExistingFileOfTheNameGiven();
    void keepsAnExistingFileOfTheNameGiven();
    void refusesAnExistingFile();
    void overwritesAnExistingFile();
    void keepsAnExistingFile();
    void dryRunWritesNothing();
    void dryRunStillFindsFaults();
    void tellsEachFileOnALine();
    void quietTellsNothing();
    void aTerminalGetsABar();
    void doesTheSameWithAnyNumberOfJobs();
    void exportsStandardInputToStandardOutput_data();
    void exportsStandardInputToStandardOutput();
    void dryRunOfStandardInputIsSilent();
    void leavesAChosenPlatformAlone();
    void linksNoWidgets();

private:
    [[nodiscard]] QString path(const char *name) const { return m_folder->filePath(QLatin1String(name)); }
    [[nodiscard]] ExporterRun run(const QStringList &arguments) const
    {
        return runExporter(arguments, {.folder = m_folder->path()});
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_gauge;
};

void tst_ExporterFiles::helpNamesEveryOption()
{
    const ExporterRun result = run({u"--help"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.err, QByteArray());
    for (const char *option : {"--formats", "--output", "--to", "--size", "--name-template", "--layers",
                               "--text-as-paths", "--mm", "--dpi", "--jobs", "--overwrite", "--keep",
                               "--dry-run", "--quiet", "--tick-limit", "--help", "--version"})
        QVERIFY2(result.out.contains(option), option);
}

void tst_ExporterFiles::versionNamesProgramAndVersion()
{
    const ExporterRun result = run({u"--version"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, QByteArray("corvalence-export " CORVALENCE_VERSION "\n"));
}

void tst_ExporterFiles::writesBesideEachGauge()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"a"_s));
    const QString other = writeGauge(path("a/Other.gauge"));
    QCOMPARE(run({u"Dial.gauge"_s, other}).status, 0);
    QVERIFY(QFile::exists(path("Dial.png")));
    QVERIFY(QFile::exists(path("a/Other.png")));
}

void tst_ExporterFiles::makesTheOutputFolder()
{
    QCOMPARE(run({u"--output"_s, u"made/for/it"_s, m_gauge}).status, 0);
    QVERIFY(QFile::exists(path("made/for/it/Dial.png")));
    QVERIFY(!QFile::exists(path("Dial.png")));
}

void tst_ExporterFiles::fillsTheNameTemplate_data()
{
    QTest::addColumn<QString>("nameTemplate");
    QTest::addColumn<QString>("sizes");
    QTest::addColumn<QStringList>("files");
    QTest::newRow("name and size") << u"{size}px {name}"_s << u"64,128"_s
                                   << QStringList{u"128px Dial.png"_s, u"64px Dial.png"_s};
    QTest::newRow("no place") << u"face"_s << u"64"_s << QStringList{u"face.png"_s};
    QTest::newRow("a place twice") << u"{name}{name}"_s << u"64"_s << QStringList{u"DialDial.png"_s};
    QTest::newRow("a dot") << u"{name}.x"_s << u"64"_s << QStringList{u"Dial.x.png"_s};
    QTest::newRow("folders") << u"{size}/{name}"_s << u"64,128"_s
                             << QStringList{u"128"_s, u"128/Dial.png"_s, u"64"_s, u"64/Dial.png"_s};
}

void tst_ExporterFiles::fillsTheNameTemplate()
{
    QFETCH(const QString, nameTemplate);
    QFETCH(const QString, sizes);
    QFETCH(const QStringList, files);
    const ExporterRun result =
        run({u"--name-template"_s, nameTemplate, u"--size"_s, sizes, u"--output"_s, u"out"_s, m_gauge});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(contents(path("out")), files);
}

void tst_ExporterFiles::writesToTheNameGiven_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("suffix"); // of the file that is made without a name
    QTest::newRow("a PNG") << QStringList{} << u"face.png"_s << u"png"_s;
    QTest::newRow("an SVG, by its suffix") << QStringList{} << u"face.SVG"_s << u"svg"_s;
    QTest::newRow("a table, by its suffix") << QStringList{} << u"face.csv"_s << u"csv"_s;
    QTest::newRow("a gauge, by its suffix") << QStringList{} << u"renewed.gauge"_s << u"gauge"_s;
    QTest::newRow("no suffix") << QStringList{} << u"face"_s << u"png"_s;
    QTest::newRow("another suffix") << QStringList{} << u"face.tmp"_s << u"png"_s;
    QTest::newRow("a format against the suffix")
        << QStringList{u"-f"_s, u"csv"_s} << u"face.png"_s << u"csv"_s;
    QTest::newRow("a name like a template") << QStringList{} << u"{name}.png"_s << u"png"_s;
    QTest::newRow("a table, which has no size")
        << QStringList{u"-s"_s, u"64,128"_s, u"-f"_s, u"csv"_s} << u"face"_s << u"csv"_s;
}

void tst_ExporterFiles::writesToTheNameGiven()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, name);
    QFETCH(const QString, suffix);
    const ExporterRun result = run(options + QStringList{u"--to"_s, name, u"Dial.gauge"_s});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, name.toUtf8() + '\n');
    QStringList files{u"Dial.gauge"_s, name};
    files.sort();
    QCOMPARE(contents(m_folder->path()), files);
    QCOMPARE(run({u"-f"_s, suffix, u"-o"_s, u"usual"_s, u"Dial.gauge"_s}).status, 0);
    QCOMPARE(readFile(m_folder->filePath(name)), readFile(m_folder->filePath(u"usual/Dial."_s + suffix)));
}

void tst_ExporterFiles::makesTheFolderOfTheNameGiven()
{
    QCOMPARE(run({u"--to"_s, u"made/for/it.png"_s, m_gauge}).status, 0);
    QVERIFY(!QImage(path("made/for/it.png")).isNull());
}

void tst_ExporterFiles::refusesAnExistingFileOfTheNameGiven()
{
    writeFile(path("face"), "mine");
    const ExporterRun result = run({u"--to"_s, u"face"_s, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err,
             QByteArray("Dial.gauge: face exists already (--overwrite replaces it, --keep keeps it).\n"));
    QCOMPARE(readFile(path("face")), QByteArray("mine"));
}

void tst_ExporterFiles::overwritesAnExistingFileOfTheNameGiven()
{
    writeFile(path("face"), "theirs");
    QCOMPARE(run({u"--overwrite"_s, u"--to"_s, u"face"_s, m_gauge}).status, 0);
    QVERIFY(!QImage(path("face")).isNull());
}

void tst_ExporterFiles::keepsAnExistingFileOfTheNameGiven()
{
    writeFile(path("face"), "mine");
    QCOMPARE(run({u"--keep"_s, u"--to"_s, u"face"_s, m_gauge}).status, 0);
    QCOMPARE(readFile(path("face")), QByteArray("mine"));
}

void tst_ExporterFiles::refusesAnExistingFile()
{
    writeFile(path("Dial.png"), "mine");
    const ExporterRun result = run({u"-f"_s, u"png,svg"_s, u"Dial.gauge"_s});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, QByteArray("Dial.gauge: Dial.png exists already (--overwrite replaces it, "
                                    "--keep keeps it).\n"));
    QCOMPARE(readFile(path("Dial.png")), QByteArray("mine"));
    QVERIFY(QFile::exists(path("Dial.svg"))); // the rest is made all the same
}

void tst_ExporterFiles::overwritesAnExistingFile()
{
    writeFile(path("Dial.png"), "theirs");
    QCOMPARE(run({u"--overwrite"_s, m_gauge}).status, 0);
    QVERIFY(!QImage(path("Dial.png")).isNull());
}

void tst_ExporterFiles::keepsAnExistingFile()
{
    writeFile(path("Dial.png"), "mine");
    const ExporterRun result = run({u"--keep"_s, u"-f"_s, u"png,svg"_s, u"Dial.gauge"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, QByteArray("Dial.svg\n"));
    QCOMPARE(readFile(path("Dial.png")), QByteArray("mine"));
}

void tst_ExporterFiles::dryRunWritesNothing()
{
    const ExporterRun result =
        run({u"--dry-run"_s, u"-f"_s, u"png,csv"_s, u"-s"_s, u"64,128"_s, u"-o"_s, u"out"_s, m_gauge});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, QByteArray("out/Dial-64.png\nout/Dial-128.png\nout/Dial.csv\n"));
    QCOMPARE(contents(m_folder->path()), QStringList{u"Dial.gauge"_s});
}

void tst_ExporterFiles::dryRunStillFindsFaults()
{
    writeFile(path("Dial.png"), "mine");
    writeFile(path("Broken.gauge"), "{");
    const ExporterRun result = run({u"--dry-run"_s, u"--jobs"_s, u"1"_s, m_gauge, path("Broken.gauge")});
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err.count('\n'), 2);
}

void tst_ExporterFiles::tellsEachFileOnALine()
{
    const ExporterRun result = run({u"-f"_s, u"png,svg"_s, u"Dial.gauge"_s});
    QCOMPARE(result.out, QByteArray("Dial.png\nDial.svg\n"));
    QCOMPARE(result.err, QByteArray());
}

void tst_ExporterFiles::quietTellsNothing()
{
    const ExporterRun result = run({u"--quiet"_s, m_gauge});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(result.err, QByteArray());
}

void tst_ExporterFiles::aTerminalGetsABar()
{
#ifdef Q_OS_UNIX
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    QVERIFY(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    // The bar comes when work takes longer than a blink. Large pictures one after another do on any machine.
    QStringList arguments{u"--jobs"_s, u"1"_s, u"--size"_s, u"1024"_s, u"--overwrite"_s};
    constexpr int gauges = 60;
    for (int number = 0; number < gauges; ++number)
        arguments.append(writeGauge(m_folder->filePath(QString::number(number) + u".gauge"_s)));
    const ExporterRun result = runExporter(
        arguments, {.folder = m_folder->path(), .standardOutput = QString::fromLocal8Bit(ptsname(terminal))});
    QCOMPARE(result.status, 0);

    QByteArray shown;
    std::array<char, 4096> chunk{};
    for (ssize_t length = 0; (length = read(terminal, chunk.data(), chunk.size())) > 0;)
        shown.append(chunk.data(), length);
    close(terminal);
    const QByteArray full = "[" + QByteArray(40, '#') + "] 60/60";
    QVERIFY2(shown.contains('\r' + full), shown.constData());
    QVERIFY(shown.endsWith('\r' + QByteArray(full.size(), ' ') + '\r')); // and is taken away
    QVERIFY(!shown.contains(".png"));
#else
    QSKIP("needs a pseudo-terminal");
#endif
}

void tst_ExporterFiles::doesTheSameWithAnyNumberOfJobs()
{
    QStringList gauges;
    for (int number = 0; number < 20; ++number) {
        const QStringList layers(number % 5 + 1, u"Layer"_s);
        gauges.append(writeGauge(m_folder->filePath(QString::number(number) + u".gauge"_s), layers));
    }
    const QStringList options{u"-f"_s, u"png,svg"_s, u"-s"_s, u"96"_s};
    QCOMPARE(run(options + QStringList{u"-j"_s, u"1"_s, u"-o"_s, u"one"_s} + gauges).status, 0);
    QCOMPARE(run(options + QStringList{u"-j"_s, u"16"_s, u"-o"_s, u"many"_s} + gauges).status, 0);
    const QStringList files = contents(path("one"));
    QCOMPARE(files.size(), 40);
    QCOMPARE(contents(path("many")), files);
    for (const QString &file : files)
        QCOMPARE(readFile(path("many/") + file), readFile(path("one/") + file));
}

void tst_ExporterFiles::exportsStandardInputToStandardOutput_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("file");
    QTest::newRow("PNG") << QStringList{} << u"Dial.png"_s;
    QTest::newRow("SVG") << QStringList{u"-f"_s, u"svg"_s, u"--mm"_s, u"60"_s} << u"Dial.svg"_s;
    QTest::newRow("keyframe table") << QStringList{u"-f"_s, u"csv"_s, u"-s"_s, u"64,128"_s} << u"Dial.csv"_s;
}

void tst_ExporterFiles::exportsStandardInputToStandardOutput()
{
    QFETCH(const QStringList, options);
    QFETCH(const QString, file);
    QCOMPARE(run(options + QStringList{m_gauge}).status, 0);
    const ExporterRun result = runExporter(options + QStringList{u"-"_s}, {.input = readFile(m_gauge)});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, readFile(m_folder->filePath(file)));

    // Without a file there is no name to take for the first layer.
    const QByteArray unnamed = readFile(writeGauge(path("Unnamed.gauge"), {QString(), QString()}));
    const ExporterRun renewed = runExporter({u"-f"_s, u"gauge"_s, u"-"_s}, {.input = unnamed});
    QCOMPARE(layerNames(renewed.out), QStringList({u"Layer 1"_s, u"Layer 2"_s}));
}

void tst_ExporterFiles::dryRunOfStandardInputIsSilent()
{
    const ExporterRun result = runExporter({u"--dry-run"_s, u"-"_s}, {.input = readFile(m_gauge)});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, QByteArray());
}

void tst_ExporterFiles::leavesAChosenPlatformAlone()
{
    // A platform that is not there shows that it was not replaced.
    const ExporterRun result =
        runExporter({m_gauge}, {.environment = {{u"QT_QPA_PLATFORM"_s, u"no-such-platform"_s}}});
    QVERIFY(result.status != 0);
    QVERIFY(!QFile::exists(path("Dial.png")));
}

void tst_ExporterFiles::linksNoWidgets()
{
    // Whoever links a library names it in the program's file.
    QVERIFY(readFile(QStringLiteral(CORVALENCE_EXPORT)).contains("Qt6Gui"));
    QVERIFY(!readFile(QStringLiteral(CORVALENCE_EXPORT)).contains("Qt6Widgets"));
}

ADD_TEST_CLASS(tst_ExporterFiles)
#include "tst_exporterfiles.moc"
