#include "exporterrun.h"
#include "support/terminal.h"
#include "support/testmain.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// The exporter with terminals, closed streams and streams that are full.
class tst_ExporterStreams : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void reportsWhenStandardOutputTakesNothing_data();
    void reportsWhenStandardOutputTakesNothing();
    void opensClosedStreams();
    void showsProgressOnATerminal_data();
    void showsProgressOnATerminal();
    void refusesToWritePicturesToATerminal();
};

void tst_ExporterStreams::reportsWhenStandardOutputTakesNothing_data()
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

void tst_ExporterStreams::reportsWhenStandardOutputTakesNothing()
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

void tst_ExporterStreams::opensClosedStreams()
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

void tst_ExporterStreams::showsProgressOnATerminal_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QByteArray>("lastBar");
    QTest::newRow("usual") << 80 << '[' + QByteArray(40, '#') + "] 41/41";
    QTest::newRow("unknown width") << 0 << '[' + QByteArray(40, '#') + "] 41/41";
    QTest::newRow("narrow") << 20 << QByteArray("[###########] 41/41");
    QTest::newRow("too narrow for a bar") << 8 << QByteArray("41/41");
}

void tst_ExporterStreams::showsProgressOnATerminal()
{
    QFETCH(const int, columns);
    QFETCH(const QByteArray, lastBar);
    const Terminal terminal(static_cast<unsigned short>(columns));
    if (!terminal.isOpen())
        QSKIP("The system has no pseudo-terminals.");
    // Long enough for the bar to appear on any machine.
    QStringList arguments = words("--jobs 1 --size 1500 Gone.gauge");
    for (int number = 0; number < 40; ++number) {
        arguments.append(QString::number(number) + u".gauge"_s);
        writeGauge(arguments.constLast());
    }
    QCOMPARE(run(arguments, {.standardOutput = terminal.path()}).status, 1);
    const QByteArray text = terminal.takeText();
    QVERIFY2(text.endsWith('\r' + lastBar + '\r' + QByteArray(lastBar.size(), ' ') +
                           "\r40 files written, 1 gauge failed\r\n"),
             text.right(200).constData());

    const Terminal other(80);
    QCOMPARE(run("--dry-run -f csv Dial.gauge", {.standardOutput = other.path()}).status, 0);
    QCOMPARE(other.takeText(), QByteArray("Dial.csv\r\n"));
}

void tst_ExporterStreams::refusesToWritePicturesToATerminal()
{
    const QByteArray gauge = read(u"Dial.gauge"_s);
    const Terminal terminal(80);
    if (!terminal.isOpen())
        QSKIP("The system has no pseudo-terminals.");
    for (const char *arguments : {"-", "--to /dev/stdout Dial.gauge"}) {
        const ExporterRun result = run(arguments, {.input = gauge, .standardOutput = terminal.path()});
        QCOMPARE(result.status, 2);
        QVERIFY(result.err.contains("standard output is a terminal"));
    }
    QCOMPARE(terminal.takeText(), QByteArray());
    const Terminal other(80);
    QCOMPARE(run("-f csv -", {.input = gauge, .standardOutput = other.path()}).status, 0);
    QVERIFY(other.takeText().startsWith("Layer,"));
}

ADD_TEST_CLASS(tst_ExporterStreams)
#include "tst_exporterstreams.moc"
