#include "exporterrun.h"
#include "model/gaugefile.h"
#include "support/testmain.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTest>

using namespace Qt::StringLiterals;

/// Face, needle and cover as files of their own.
class tst_ExporterSplit : public ExporterTest
{
    Q_OBJECT

private Q_SLOTS:
    void filesOfParts_data();
    void filesOfParts();
    void needleThatIsMissingFailsTheGauge();
    void otherFormatsAreWhole();
    void jsonListsTheParts();
    void onlyTheFaceHasTheDot();
    void needlesOfSamplesAreFound_data();
    void needlesOfSamplesAreFound();
    void pageTakesTheNeedleByItself_data();
    void pageTakesTheNeedleByItself();
    void pageThatCannotBeMadeIsReported_data();
    void pageThatCannotBeMadeIsReported();
    void partsAreTheWholePicture_data();
    void partsAreTheWholePicture();
};

namespace {

QString samplePath(const QString &name)
{
    return QStringLiteral(CORVALENCE_SOURCE "/samples/%1.gauge").arg(name);
}

} // namespace

void tst_ExporterSplit::filesOfParts_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *arguments, const QStringList &files) {
        QTest::newRow(arguments) << words(arguments) << files;
    };
    row("--split Hand", {u"A-cover.png"_s, u"A-face.png"_s, u"A-needle.png"_s});
    row("--split Hand,Hub", {u"A-face.png"_s, u"A-needle.png"_s});
    row("--split H* --layers Hand,Hub", {u"A-needle.png"_s});
    row("--split Hand --split 3 -f svg", {u"A-face.svg"_s, u"A-needle-2.svg"_s, u"A-needle.svg"_s});
    row("--split Face --split Hub -f pdf", {u"A-face-2.pdf"_s, u"A-needle-2.pdf"_s, u"A-needle.pdf"_s});
    row("--split Hand -s 64,128 --layers Face,Hand",
        {u"A-128-face.png"_s, u"A-128-needle.png"_s, u"A-64-face.png"_s, u"A-64-needle.png"_s});
    row("--split Hand -n {size}/{name} --layers Hand", {u"512/A-needle.png"_s});
}

void tst_ExporterSplit::filesOfParts()
{
    QFETCH(const QStringList, arguments);
    QFETCH(QStringList, expected);
    writeGauge(u"A.gauge"_s, {u"Face"_s, u"Hand"_s, u"Hub"_s});
    // A dry run lists the same files.
    const ExporterRun dry = run(arguments + QStringList{u"--dry-run"_s, u"A.gauge"_s});
    QCOMPARE(dry.err, QByteArray());
    QStringList listed = QString::fromUtf8(dry.out).split(u'\n', Qt::SkipEmptyParts);
    listed.sort();
    QCOMPARE(listed, expected);

    const ExporterRun result = run(arguments + QStringList{u"A.gauge"_s});
    QCOMPARE(result.status, 0);
    QCOMPARE(result.err, QByteArray());
    for (const QString &file : expected)
        QVERIFY2(!read(file).isEmpty(), qPrintable(file));
    const QStringList made = files().filter(QRegularExpression(u"\\.(png|svg|pdf)$"_s));
    QCOMPARE(made, expected);
}

void tst_ExporterSplit::needleThatIsMissingFailsTheGauge()
{
    writeGauge(u"A.gauge"_s, {u"Face"_s, u"Hand"_s});
    writeGauge(u"B.gauge"_s, {u"Face"_s, u"Needle"_s});
    const ExporterRun result = run("--split Needle A.gauge B.gauge");
    QCOMPARE(result.status, 1);
    QCOMPARE(result.err, "A.gauge: There is no layer \"Needle\". The layers are \"Face\", \"Hand\".\n");
    QCOMPARE(files().filter(u".png"_s), QStringList({u"B-face.png"_s, u"B-needle.png"_s}));
}

void tst_ExporterSplit::otherFormatsAreWhole()
{
    writeGauge(u"A.gauge"_s, {u"Face"_s, u"Hand"_s});
    QCOMPARE(run("-f csv,gauge --split Hand -o out A.gauge").status, 0);
    QCOMPARE(run("-f csv,gauge -o whole A.gauge").status, 0);
    QCOMPARE(read(u"out/A.csv"_s), read(u"whole/A.csv"_s));
    QCOMPARE(read(u"out/A.gauge"_s), read(u"whole/A.gauge"_s));
}

void tst_ExporterSplit::jsonListsTheParts()
{
    const QStringList arguments =
        words("-f json -s 300,64 --split Needle* --split Hub --needle-angle -24.5 --needle-angle 90");
    const ExporterRun result = run(arguments + QStringList{u"-o"_s, path({}), samplePath(u"Speedometer"_s)});
    QCOMPARE(result.err, QByteArray());
    const QJsonObject table = QJsonDocument::fromJson(read(u"Speedometer.json"_s)).object();
    QStringList parts;
    for (const QJsonValue &part : table["parts"_L1].toArray()) {
        const int layerCount = static_cast<int>(part["layers"_L1].toArray().size());
        parts.append(
            u"%1 %2 %3"_s.arg(part["name"_L1].toString()).arg(layerCount).arg(part["angle"_L1].toDouble()));
    }
    QCOMPARE(parts, QStringList({u"face 4 0"_s, u"needle 3 -24.5"_s, u"needle-2 1 90"_s}));
    QCOMPARE(table["sizes"_L1][0]["pivot"_L1][0].toDouble(), 150.0);
    QCOMPARE(table["sizes"_L1][1]["pivot"_L1][1].toDouble(), 32.0);
}

void tst_ExporterSplit::onlyTheFaceHasTheDot()
{
    gaugeData tick;
    tick.divisionInnerRadius = {0.5, 0.5, 0.5};
    write(u"A.gauge"_s, gaugeFile::write({{u"Face"_s, tick}, {u"Needle"_s, tick}, {u"Top"_s, tick}}));
    QCOMPARE(run("--split Needle A.gauge").status, 0);
    const auto centreAlpha = [this](const QString &name) {
        return QImage(path(name)).pixelColor(256, 256).alpha();
    };
    QCOMPARE(centreAlpha(u"A-face.png"_s), 255);
    QCOMPARE(centreAlpha(u"A-needle.png"_s), 0);
    QCOMPARE(centreAlpha(u"A-cover.png"_s), 0);
}

void tst_ExporterSplit::needlesOfSamplesAreFound_data()
{
    QTest::addColumn<QString>("sample");
    const QStringList files = contents(QStringLiteral(CORVALENCE_SOURCE "/samples"));
    for (const QString &file : files.filter(u".gauge"_s)) {
        if (file != "Battery.gauge"_L1) // its charge is an arc
            QTest::newRow(qPrintable(file)) << file.chopped(6);
    }
}

void tst_ExporterSplit::needlesOfSamplesAreFound()
{
    QFETCH(const QString, sample);
    const ExporterRun result =
        run({u"--split"_s, u"Needle*"_s, u"-s"_s, u"64"_s, u"-o"_s, path(u"out"_s), samplePath(sample)});
    QCOMPARE(result.err, QByteArray());
    QCOMPARE(contents(path(u"out"_s)),
             QStringList({sample + u"-cover.png"_s, sample + u"-face.png"_s, sample + u"-needle.png"_s}));
}

void tst_ExporterSplit::pageTakesTheNeedleByItself_data()
{
    QTest::addColumn<QStringList>("layers");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("labels"); // of the needles
    const QStringList needle{u"Face"_s, u"Needle base"_s, u"Needle"_s, u"Hub"_s};
    QTest::newRow("by its name") << needle << QStringList() << QStringList{u"A"_s};
    QTest::newRow("without a needle")
        << QStringList{u"Face"_s, u"Hand"_s} << QStringList() << QStringList{u"A"_s};
    QTest::newRow("chosen") << needle << QStringList{u"--split"_s, u"Needle"_s, u"--split"_s, u"Hub"_s}
                            << QStringList{u"Needle"_s, u"Hub"_s};
}

void tst_ExporterSplit::pageTakesTheNeedleByItself()
{
    QFETCH(const QStringList, layers);
    QFETCH(const QStringList, arguments);
    QFETCH(const QStringList, labels);
    writeGauge(u"A.gauge"_s, layers);
    const ExporterRun result = run(arguments + QStringList{u"--to"_s, u"A.html"_s, u"A.gauge"_s});
    QCOMPARE(result.err, QByteArray());
    const QString page = QString::fromUtf8(read(u"A.html"_s));
    QStringList found;
    static const QRegularExpression label(u"role=\"meter\" aria-label=\"([^\"]*)\""_s);
    for (const QRegularExpressionMatch &match : label.globalMatch(page))
        found.append(match.captured(1));
    QCOMPARE(found, labels);
}

void tst_ExporterSplit::pageThatCannotBeMadeIsReported_data()
{
    QTest::addColumn<QStringList>("layers");
    QTest::addColumn<bool>("hasScale");
    QTest::addColumn<QByteArray>("error");
    QTest::newRow("no scale") << QStringList{u"Face"_s} << false << QByteArray("It has no scale");
    QTest::newRow("parts of the needle")
        << QStringList{u"Needle"_s, u"Face"_s, u"Needle tail"_s} << true
        << QByteArray("\"Face\" lies between those of \"Needle*\". --split chooses");
}

void tst_ExporterSplit::pageThatCannotBeMadeIsReported()
{
    QFETCH(const QStringList, layers);
    QFETCH(const bool, hasScale);
    QFETCH(const QByteArray, error);
    gaugeData data;
    data.tickCountEnabled = hasScale;
    QList<gaugeLayer> gauge;
    for (const QString &name : layers)
        gauge.append({name, data});
    write(u"A.gauge"_s, gaugeFile::write(gauge));
    const RunConditions fromFile{.standardInput = path(u"A.gauge"_s)};
    for (const char *arguments : {"-f html A.gauge", "-f html --dry-run A.gauge"}) {
        const ExporterRun result = run(arguments);
        QCOMPARE(result.status, 1);
        QVERIFY2(result.err.contains(error), result.err);
        QCOMPARE(result.out, QByteArray());
    }
    QCOMPARE(run("-f html --dry-run -", fromFile).status, 1);
    QVERIFY(!files().contains(u"A.html"_s));
}

void tst_ExporterSplit::partsAreTheWholePicture_data()
{
    QTest::addColumn<QString>("sample");
    QTest::addColumn<QStringList>("needles");
    QTest::addColumn<QList<double>>("angles"); // as the sample's file has them
    QTest::newRow("one needle") << u"Voltmeter"_s << QStringList{u"Needle*"_s} << QList<double>{14.4};
    QTest::newRow("several layers") << u"Speedometer"_s << QStringList{u"Needle*"_s} << QList<double>{-24.0};
    QTest::newRow("several needles") << u"Clock"_s
                                     << QStringList{u"Needle hour"_s, u"Needle minute"_s, u"Needle second*"_s}
                                     << QList<double>{304.8, 57.6, 216.0};
    QTest::newRow("layers between") << u"Altimeter"_s
                                    << QStringList{u"Needle ten thousands*"_s, u"Needle hundreds"_s}
                                    << QList<double>{27.54, 234.0};
}

void tst_ExporterSplit::partsAreTheWholePicture()
{
    const QString renderer = QStandardPaths::findExecutable(u"rsvg-convert"_s);
    if (renderer.isEmpty())
        QSKIP("rsvg-convert is not installed");
    QFETCH(const QString, sample);
    QFETCH(const QStringList, needles);
    QFETCH(const QList<double>, angles);
    const QStringList common{u"-f"_s, u"svg"_s, u"--text-as-paths"_s, u"-o"_s, path({}), samplePath(sample)};
    QStringList arguments;
    for (const QString &needle : needles)
        arguments << u"--split"_s << needle;
    QCOMPARE(run(arguments + common).err, QByteArray());
    QCOMPARE(run(common).err, QByteArray());

    // Each part in an SVG around it, which turns a needle back about the centre.
    QByteArray drawing = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 512 512\">";
    qsizetype needle = 0;
    for (const char *part : {"face", "needle", "face-2", "needle-2", "face-3", "needle-3", "cover"}) {
        const QString name = sample + u'-' + QLatin1StringView(part) + u".svg"_s;
        const bool turns = QByteArrayView(part).startsWith("needle");
        const double angle = turns && needle < angles.size() ? angles.at(needle++) : 0.0;
        if (!QFile::exists(path(name)))
            continue;
        const QByteArray file = read(name);
        drawing += "<g transform=\"rotate(" + QByteArray::number(angle) + " 256 256)\">" +
                   file.mid(file.indexOf("<g")).chopped(7) + "</g>";
        QVERIFY(file.endsWith("</svg>\n") || file.endsWith("</svg>"));
    }
    write(u"parts.svg"_s, drawing + "</svg>");
    const auto rendered = [&](const QString &name) {
        const QString png = path(name + u".png"_s);
        QProcess::execute(renderer, {u"-w"_s, u"512"_s, u"-h"_s, u"512"_s, u"-o"_s, png, path(name)});
        return QImage(png).convertToFormat(QImage::Format_ARGB32);
    };
    const QImage parts = rendered(u"parts.svg"_s);
    const QImage whole = rendered(sample + u".svg"_s);
    QCOMPARE(parts.size(), QSize(512, 512));
    QCOMPARE(whole.size(), parts.size());
    int maxDifference = 0;
    for (int y = 0; y < 512; ++y) {
        for (int x = 0; x < 512; ++x) {
            const QColor a = parts.pixelColor(x, y);
            const QColor b = whole.pixelColor(x, y);
            maxDifference = std::max({maxDifference, qAbs(a.red() - b.red()), qAbs(a.green() - b.green()),
                                      qAbs(a.blue() - b.blue()), qAbs(a.alpha() - b.alpha())});
        }
    }
    QVERIFY2(maxDifference <= 8, qPrintable(QString::number(maxDifference))); // of 255
}

ADD_TEST_CLASS(tst_ExporterSplit)
#include "tst_exportersplit.moc"
