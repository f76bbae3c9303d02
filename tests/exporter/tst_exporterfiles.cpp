#include "exporterrun.h"
#include "support/testmain.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

/// The names of the exporter's files, what happens to files that exist, and what the user is told.
class tst_ExporterFiles : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void namesFiles_data();
    void namesFiles();
    void treatsExistingFiles_data();
    void treatsExistingFiles();
    void reportsFailures_data();
    void reportsFailures();
    void exportsTheOtherGauges();
    void refusesGaugesWhoseFilesHaveTheSameName_data();
    void refusesGaugesWhoseFilesHaveTheSameName();
    void showsVersionAndUsageErrors();
    void writesTheSameWithAnyNumberOfJobs();
    void exportsStandardInputToStandardOutput_data();
    void exportsStandardInputToStandardOutput();
    void linksNoWidgets();
};

void tst_ExporterFiles::namesFiles_data()
{
    QTest::addColumn<QByteArray>("out");
    const auto row = [](const char *arguments, const QByteArray &out) { QTest::newRow(arguments) << out; };
    row("Dial.gauge", "Dial.png\n");
    row("a/Other.gauge", "a/Other.png\n");
    row("-f png,svg -f svg,csv Dial.gauge", "Dial.png\nDial.svg\nDial.csv\n");
    row("-s 64,64 Dial.gauge", "Dial.png\n");
    row("-s 64,128 -f png,csv Dial.gauge", "Dial-64.png\nDial-128.png\nDial.csv\n");
    row("-o made/for/it Dial.gauge", "made/for/it/Dial.png\n");
    row("-n {size}px_{name} -s 64,128 Dial.gauge", "64px_Dial.png\n128px_Dial.png\n");
    row("-n face Dial.gauge", "face.png\n");
    row("-n {name}{name} Dial.gauge", "DialDial.png\n");
    row("-n {name}.x Dial.gauge", "Dial.x.png\n");
    row("-n {size}/{name} -s 64 Dial.gauge", "64/Dial.png\n");
    row("{size}.gauge", "{size}.png\n");
    row("link/../Other.gauge", "link/../Other.png\n");
    row("-o link/.. Dial.gauge", "link/../Dial.png\n");
    row(":x.gauge", "./:x.png\n");
    row("-n :y -o . Dial.gauge", "./:y.png\n");
    row("--to :z Dial.gauge", "./:z\n");
    row("--to made/{name} Dial.gauge", "made/{name}\n");
    row("--to face -s 64,128 -f csv Dial.gauge", "face\n");
    row("-q Dial.gauge", "");
}

void tst_ExporterFiles::namesFiles()
{
    QFETCH(const QByteArray, out);
    for (const QString &name : {u"a/Other.gauge"_s, u"{size}.gauge"_s, u"./:x.gauge"_s})
        writeGauge(name);
    QDir().mkdir(path(u"a/b"_s));
    QFile::link(u"a/b"_s, path(u"link"_s));
    const QStringList before = files();
    const ExporterRun dry = run(words("--dry-run") + words(QTest::currentDataTag()));
    QCOMPARE(dry.out, out);
    QCOMPARE(files(), before);
    const ExporterRun result = run(QTest::currentDataTag());
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.status, 0);
    QCOMPARE(result.out, out);
    for (const QByteArray &file : out.split('\n'))
        QVERIFY2(QFile::exists(path(QString::fromUtf8(file))), file.constData());
    QVERIFY(files() != before);
}

void tst_ExporterFiles::treatsExistingFiles_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");
    QTest::addColumn<bool>("replaces");
    const auto row = [](const char *arguments, int status, const QByteArray &out, const QByteArray &err = {},
                        bool replaces = false) {
        QTest::newRow(arguments) << status << out << err << replaces;
    };
    const QByteArray exists = " already exists (--overwrite replaces it, --keep keeps it).\n";
    row("-f csv,svg,pdf Dial.gauge", 1, "Dial.svg\n", "Dial.gauge: Dial.csv" + exists);
    row("-f csv --dry-run Dial.gauge", 1, "", "Dial.gauge: Dial.csv" + exists);
    row("-f csv,svg --keep Dial.gauge", 0, "Dial.svg\n");
    row("-f csv,svg --overwrite Dial.gauge", 0, "Dial.csv\nDial.svg\n", {}, true);
    row("--to Dial.csv Dial.gauge", 1, "", "Dial.gauge: Dial.csv" + exists);
    row("--to Dial.csv --keep Dial.gauge", 0, "");
    row("--to Dial.csv --overwrite Dial.gauge", 0, "Dial.csv\n", {}, true);
    row("-n link -f csv --overwrite Dial.gauge", 0, "link.csv\n", {}, true);
    row("-f csv --overwrite -o folder Dial.gauge", 1, "", "Dial.gauge: folder/Dial.csv is a folder.\n");
    row("-f csv -o folder Dial.gauge", 1, "", "Dial.gauge: folder/Dial.csv is a folder.\n");
    row("-n dangling -f csv --keep Dial.gauge", 1, "",
        "Dial.gauge: dangling.csv is a link to a file that does not exist.\n");
    row("-o Dial.csv/x Dial.gauge", 1, "",
        "Dial.gauge: The folder Dial.csv/x cannot be created: Not a directory\n");
}

void tst_ExporterFiles::treatsExistingFiles()
{
    QFETCH(const int, status);
    QFETCH(const QByteArray, out);
    QFETCH(const QByteArray, err);
    QFETCH(const bool, replaces);
    write(u"Dial.csv"_s, "mine");
    write(u"Dial.pdf"_s, "mine");
    QFile::setPermissions(path(u"Dial.csv"_s), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QFile::link(u"Dial.csv"_s, path(u"link.csv"_s));
    QFile::link(u"nothing"_s, path(u"dangling.csv"_s));
    QDir().mkpath(path(u"folder/Dial.csv"_s));
    const ExporterRun result = run(QTest::currentDataTag());
    QCOMPARE(result.err, err);
    QCOMPARE(result.out, out);
    QCOMPARE(result.status, status);
    QCOMPARE(read(u"Dial.csv"_s).startsWith("Layer,"), replaces);
    QVERIFY(replaces || read(u"Dial.csv"_s) == "mine");
    QVERIFY(QFileInfo(path(u"Dial.csv"_s)).permission(QFile::ExeOwner)); // replaced with its permissions
    QVERIFY(QFileInfo(path(u"link.csv"_s)).isSymLink());
    QVERIFY(files().filter(u".tmp"_s).isEmpty());
}

void tst_ExporterFiles::reportsFailures_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("err");
    const auto row = [](const QStringList &arguments, const QByteArray &err) {
        QTest::addRow("%s", qPrintable(arguments.join(u' '))) << arguments << err;
    };
    const QByteArray layers = " The layers are \"Dial\".\n";
    row({u"No\nsuch\x1b[31m.gauge"_s}, "No?such?[31m.gauge: No such file or directory\n");
    row(words("-l Needle Dial.gauge"), "Dial.gauge: There is no layer \"Needle\"." + layers);
    row(words("-l dial Dial.gauge"), "Dial.gauge: There is no layer \"dial\"." + layers);
    row(words("-l 0 Dial.gauge"), "Dial.gauge: There is no layer \"0\"." + layers);
    row(words("-l Dial,2,1 Dial.gauge"), "Dial.gauge: There is no layer \"2\"." + layers);
    row({u"-l"_s, u""_s, u"Dial.gauge"_s}, "Dial.gauge: There is no layer \"\"." + layers);
    QByteArray many;
    for (int number = 1; number <= 20; ++number)
        many += '"' + QByteArray::number(number) + "\", ";
    row(words("-l Needle Many.gauge"),
        "Many.gauge: There is no layer \"Needle\". The layers are " + many + "and 5 more.\n");
    row(words("-l Needle Long.gauge"),
        "Long.gauge: There is no layer \"Needle\". The layers are \"" + QByteArray(60, 'x') + "...\".\n");
    for (const char *name : {"..gauge", ".gauge", "a/...gauge"}) {
        row(words(name),
            name + QByteArray(": Its name has nothing before the suffix (--to names the output).\n"));
    }
}

void tst_ExporterFiles::reportsFailures()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const QByteArray, err);
    QStringList many;
    for (int number = 1; number <= 25; ++number)
        many.append(QString::number(number));
    writeGauge(u"Many.gauge"_s, many);
    writeGauge(u"Long.gauge"_s, {QString(1000, u'x')});
    for (const QString &name : {u"..gauge"_s, u".gauge"_s, u"a/...gauge"_s})
        writeGauge(name);
    const QStringList before = files();
    const ExporterRun result = run(arguments);
    QCOMPARE(result.err, err);
    QCOMPARE(result.status, 1);
    QCOMPARE(files(), before);
    QCOMPARE(run(words("--to face.png a/...gauge")).status, 0); // a given name needs no base name
}

void tst_ExporterFiles::exportsTheOtherGauges()
{
    write(u"Bad.gauge"_s, "{");
    writeGauge(u"Last.gauge"_s);
    const ExporterRun result = run("-j 1 -f svg Gone.gauge Bad.gauge Dial.gauge . Last.gauge");
    QCOMPARE(result.status, 1);
    QCOMPARE(result.out, QByteArray("Dial.svg\nLast.svg\n"));
    QCOMPARE(result.err, QByteArray("Gone.gauge: No such file or directory\nBad.gauge: unterminated object\n"
                                    ".: Its name has nothing before the suffix (--to names the output).\n"));
}

void tst_ExporterFiles::refusesGaugesWhoseFilesHaveTheSameName_data()
{
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");
    QTest::newRow("-j1 -f csv -o out Dial.gauge a/Dial.gauge")
        << QByteArray("out/Dial.csv\n")
        << QByteArray("a/Dial.gauge: out/Dial.csv is already written for Dial.gauge.\n");
    QTest::newRow("-j1 --size 128,1128 -n {name}{size} a.gauge a1.gauge")
        << QByteArray("a128.png\na1128.png\n")
        << QByteArray("a1.gauge: a1128.png is already written for a.gauge.\n");
    QTest::newRow("-j1 -f csv a/Dial.gauge link/Dial.gauge")
        << QByteArray("a/Dial.csv\n")
        << QByteArray("link/Dial.gauge: link/Dial.csv is already written for a/Dial.gauge.\n");
    QTest::newRow("-j1 -f csv Dial.gauge other.gauge")
        << QByteArray("Dial.csv\n")
        << QByteArray("other.gauge: other.csv is already written for Dial.gauge.\n");
}

void tst_ExporterFiles::refusesGaugesWhoseFilesHaveTheSameName()
{
    QFETCH(const QByteArray, out);
    QFETCH(const QByteArray, err);
    for (const QString &name : {u"a/Dial.gauge"_s, u"a.gauge"_s, u"a1.gauge"_s, u"other.gauge"_s})
        writeGauge(name);
    write(u"Dial.csv"_s, "old");
    QFile::link(u"a"_s, path(u"link"_s));
    QFile::link(u"Dial.csv"_s, path(u"other.csv"_s));
    const ExporterRun result = run(words("--overwrite") + words(QTest::currentDataTag()));
    QCOMPARE(result.err, err);
    QCOMPARE(result.out, out);
    QCOMPARE(result.status, 1);
}

void tst_ExporterFiles::showsVersionAndUsageErrors()
{
    QCOMPARE(run("--version").out, QByteArray("corvalence-export " CORVALENCE_VERSION "\n"));
    const ExporterRun result = run({u"-s"_s, u"\x1b[31m"_s, u"Dial.gauge"_s});
    QCOMPARE(result.err, QByteArray("corvalence-export: \"?[31m\" is not a size; it must be a whole number "
                                    "of pixels\nSee corvalence-export --help.\n"));
    QCOMPARE(result.status, 2);
}

void tst_ExporterFiles::writesTheSameWithAnyNumberOfJobs()
{
    QStringList gauges;
    for (int number = 0; number < 20; ++number) {
        gauges.append(QString::number(number) + u".gauge"_s);
        writeGauge(gauges.constLast(), QStringList(number % 5 + 1, u"Layer"_s));
    }
    QCOMPARE(run(words("-f png,svg -s 96 -j 1 -o one") + gauges).status, 0);
    QCOMPARE(run(words("-f png,svg -s 96 -j 16 -o many") + gauges).status, 0);
    const QStringList made = contents(path(u"one"_s));
    QCOMPARE(made.size(), 40);
    for (const QString &file : made)
        QCOMPARE(read(u"many/"_s + file), read(u"one/"_s + file));
}

void tst_ExporterFiles::exportsStandardInputToStandardOutput_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("-s 64") << u"Dial.png"_s;
    QTest::newRow("-f svg --mm 60") << u"Dial.svg"_s;
    QTest::newRow("-f csv -s 64,128") << u"Dial.csv"_s;
}

void tst_ExporterFiles::exportsStandardInputToStandardOutput()
{
    QFETCH(const QString, file);
    const QStringList options = words(QTest::currentDataTag());
    QCOMPARE(run(options + words("Dial.gauge")).status, 0);
    const ExporterRun result = run(options + words("-"), {.input = read(u"Dial.gauge"_s)});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(result.out, read(file));
    QCOMPARE(run(options + words("--dry-run -"), {.input = read(u"Dial.gauge"_s)}).out, QByteArray());

    const ExporterRun failed = run("-", {.input = "{}"});
    QCOMPARE(failed.status, 1);
    QCOMPARE(failed.err, QByteArray("standard input: The file contains no layers.\n"));

    // Without a file there is no name for the first layer.
    writeGauge(u"Unnamed.gauge"_s, {u""_s, u""_s});
    const ExporterRun named = run("-f gauge -", {.input = read(u"Unnamed.gauge"_s)});
    QCOMPARE(layerNames(named.out), QStringList({u"Layer 1"_s, u"Layer 2"_s}));
}

void tst_ExporterFiles::linksNoWidgets()
{
    // The program's file holds the names of the libraries that it links.
    const QByteArray program = readFile(QStringLiteral(CORVALENCE_EXPORT));
    QVERIFY(program.contains("Qt6Gui"));
    QVERIFY(!program.contains("Qt6Widgets"));
}

ADD_TEST_CLASS(tst_ExporterFiles)
#include "tst_exporterfiles.moc"
