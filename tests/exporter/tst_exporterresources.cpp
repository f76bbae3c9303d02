#include "exporterrun.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <memory>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace {

/// Lets no file of the process grow beyond @a bytes, as on a disk that is full then.
void limitFiles(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN); // the write fails then, instead of the process
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_FSIZE, &limit);
}

/// Lets the process have no more memory than @a bytes.
void limitMemory(rlim_t bytes)
{
    const rlimit limit{bytes, bytes};
    setrlimit(RLIMIT_AS, &limit);
}

} // namespace

/// What the exporter says and leaves behind when the system does not give it what it needs.
class tst_ExporterResources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        failOnUnexpectedWarnings();
        m_folder = std::make_unique<QTemporaryDir>();
        m_gauge = writeGauge(m_folder->filePath(u"Dial.gauge"_s));
    }

    void leavesNoFileThatTheDiskDoesNotHold_data();
    void leavesNoFileThatTheDiskDoesNotHold();
    void keepsTheOldFileWhenTheDiskIsFull_data();
    void keepsTheOldFileWhenTheDiskIsFull();
    void tellsAboutAPictureLargerThanMemory();
    void tellsAboutAGaugeThatCannotBeRead();
    void tellsAboutStandardInputThatCannotBeRead();
    void tellsAboutStandardOutputThatIsFull();
    void drawsOnNoOtherPlatformThanTheOneChosen();

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_gauge;
};

void tst_ExporterResources::leavesNoFileThatTheDiskDoesNotHold_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("SVG") << u"svg"_s;
    QTest::newRow("PDF") << u"pdf"_s;
    QTest::newRow("keyframe table") << u"csv"_s;
}

void tst_ExporterResources::leavesNoFileThatTheDiskDoesNotHold()
{
    QFETCH(const QString, format);
    gaugeData dense;
    dense.divisionCount[0] = 100'000; // well beyond the limit
    dense.tickCountEnabled = false;
    writeFile(m_gauge, gaugeFile::write({{u"Dense"_s, dense}}));
    const ExporterRun result =
        runExporter({u"--formats"_s, format, u"Dial.gauge"_s},
                    {.folder = m_folder->path(), .before = [] { limitFiles(1024 * 1024); }});
    QCOMPARE(result.err, "Dial.gauge: The " + format.toLatin1() + " could not be made.\n");
    QCOMPARE(result.status, 1);
    QCOMPARE(result.out, QByteArray());
    QCOMPARE(contents(m_folder->path()), QStringList{u"Dial.gauge"_s});
}

void tst_ExporterResources::keepsTheOldFileWhenTheDiskIsFull_data()
{
    QTest::addColumn<QString>("format");
    QTest::newRow("keyframe table") << u"csv"_s;
    QTest::newRow("gauge") << u"gauge"_s;
}

void tst_ExporterResources::keepsTheOldFileWhenTheDiskIsFull()
{
    QFETCH(const QString, format);
    gaugeData dense;
    dense.divisionCount[0] = 100;
    const QList<gaugeLayer> layers(1000,
                                   gaugeLayer{u"Dense"_s, dense}); // more than a mebibyte in both formats
    writeFile(m_gauge, gaugeFile::write(layers));
    QVERIFY(QDir(m_folder->path()).mkpath(u"out"_s));
    const QString old = writeFile(m_folder->filePath(u"out/Dial."_s + format), "the old one");
    const ExporterRun result =
        runExporter({u"--overwrite"_s, u"--formats"_s, format, u"--output"_s, u"out"_s, u"Dial.gauge"_s},
                    {.folder = m_folder->path(), .before = [] { limitFiles(1024 * 1024); }});
    QCOMPARE(result.err, "Dial.gauge: The " + format.toLatin1() + " could not be made.\n");
    QCOMPARE(result.status, 1);
    QCOMPARE(readFile(old), QByteArray("the old one"));
    QCOMPARE(contents(m_folder->filePath(u"out"_s)), QStringList{u"Dial."_s + format});
}

void tst_ExporterResources::tellsAboutAPictureLargerThanMemory()
{
#if defined(__SANITIZE_ADDRESS__)
    QSKIP("AddressSanitizer needs more memory than any limit would leave it.");
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    QSKIP("AddressSanitizer needs more memory than any limit would leave it.");
#endif
#endif
    // The pixels alone take a gibibyte.
    const auto limit = [] { limitMemory(rlim_t(1024) * 1024 * 1024); };
    const ExporterRun result = runExporter({u"--size"_s, u"16384"_s, u"--jobs"_s, u"1"_s, u"Dial.gauge"_s},
                                           {.folder = m_folder->path(), .before = limit});
    QCOMPARE(result.err, QByteArray("Dial.gauge: The png could not be made.\n"));
    QCOMPARE(result.status, 1);
    QCOMPARE(contents(m_folder->path()), QStringList{u"Dial.gauge"_s});

    const ExporterRun streamed =
        runExporter({u"--size"_s, u"16384"_s, u"-"_s}, {.input = readFile(m_gauge), .before = limit});
    QCOMPARE(streamed.err, QByteArray("standard input: The png could not be made.\n"));
    QCOMPARE(streamed.status, 1);
    QCOMPARE(streamed.out, QByteArray());
}

void tst_ExporterResources::tellsAboutAGaugeThatCannotBeRead()
{
    // It opens, but has nothing to read where it begins.
    const ExporterRun result = runExporter({u"-o"_s, m_folder->path(), u"/proc/self/mem"_s});
    QCOMPARE(result.err, QByteArray("/proc/self/mem: Input/output error\n"));
    QCOMPARE(result.status, 1);
    QCOMPARE(contents(m_folder->path()), QStringList{u"Dial.gauge"_s});
}

void tst_ExporterResources::tellsAboutStandardInputThatCannotBeRead()
{
    const ExporterRun result = runExporter({u"-"_s}, {.standardInput = m_folder->path()});
    QCOMPARE(result.err, QByteArray("standard input: Is a directory\n"));
    QCOMPARE(result.status, 1);
    QCOMPARE(result.out, QByteArray());
}

void tst_ExporterResources::tellsAboutStandardOutputThatIsFull()
{
    const ExporterRun result =
        runExporter({u"-"_s}, {.input = readFile(m_gauge), .standardOutput = u"/dev/full"_s});
    QCOMPARE(result.err, QByteArray("standard input: No space left on device\n"));
    QCOMPARE(result.status, 1);
}

void tst_ExporterResources::drawsOnNoOtherPlatformThanTheOneChosen()
{
    const ExporterRun result =
        runExporter({m_gauge}, {.environment = {{u"QT_QPA_PLATFORM"_s, u"no-such-platform"_s}}});
    QCOMPARE(result.status, -1);
    QVERIFY(!QFile::exists(m_folder->filePath(u"Dial.png"_s)));
}

ADD_TEST_CLASS(tst_ExporterResources)
#include "tst_exporterresources.moc"
