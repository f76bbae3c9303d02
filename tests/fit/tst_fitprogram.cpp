#include "model/gaugefile.h"
#include "render/keyframes.h"
#include "support/programrun.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

/// The program corvalence-fit, as users call it.
class tst_FitProgram : public ProgramTest
{
    Q_OBJECT

public:
    tst_FitProgram()
        : ProgramTest(QStringLiteral(CORVALENCE_FIT))
    {
    }

private Q_SLOTS:
    void init();

    void writesAGauge();
    void readsAndWritesStandardStreams();
    void filesCanBeNamedLikeStandardStreams();
    void refusesToReplaceFiles();
    void refusesUnknownOptions();
    void replacesNoInput_data();
    void replacesNoInput();
    void namesTheFileAndTheFault_data();
    void namesTheFileAndTheFault();
    void mapsReadings();
    void drawsStraightLines();
    void extrapolates();
    void choosesLabels_data();
    void choosesLabels();
    void givesLabelsTheDecimalsTheyNeed();
    void writesLabelsWithoutSign();
    void takesTheLookOfALayer_data();
    void takesTheLookOfALayer();
    void replacesLayersOfAGauge();
    void keepsTheCirclesOfReplacedLayers();
    void drawsRangesBelowTheScale();
    void writesTheCurveAsATable_data();
    void writesTheCurveAsATable();
    void replacesNeitherFileIfOneExists();
    void refusesOneFileForBoth();
    void keepsBothFilesIfOneExists_data();
    void keepsBothFilesIfOneExists();
    void reportsATableThatCannotBeWritten();
    void reportsOnOneScreen();
    void reportsStrangeNamesOnOneLine();
    void reportsLongNamesOnOneScreen();
    void escapesNamesInJson();
    void reportsNamesWithPercentSigns();
    void reportsOverlaps();
    void checksGauges_data();
    void checksGauges();

private:
    [[nodiscard]] QList<gaugeLayer> gauge(const QString &name = u"g.gauge"_s) const;
    [[nodiscard]] QJsonObject report(const ProgramRun &run) const;
};

namespace {

/// The labels in the order of the layers, as they are drawn.
QStringList drawnLabels(const QList<gaugeLayer> &layers)
{
    QStringList texts;
    for (const gaugeLayer &layer : layers) {
        QList<QPointF> frames = layer.data.tickCountEnabled ? keyframes(layer.data) : QList<QPointF>();
        if (layer.data.tickCountSkipFirst && !frames.isEmpty())
            frames.removeFirst();
        for (const QPointF &frame : std::as_const(frames))
            texts.append(QString::number(frame.x(), 'f', layer.data.tickCountDecimalPlaces));
    }
    return texts;
}

/// The angle of the only mark with this value.
double angleOf(double value, const QList<gaugeLayer> &layers)
{
    for (const gaugeLayer &layer : layers) {
        for (const QPointF &frame : keyframes(layer.data)) {
            if (std::abs(frame.x() - value) < 1e-9)
                return std::remainder(frame.y(), 360.0);
        }
    }
    return std::nan("");
}

bool isNear(double angle, double expected, double tolerance = 0.02)
{
    return std::abs(std::remainder(angle - expected, 360.0)) <= tolerance;
}

} // namespace

void tst_FitProgram::init()
{
    failOnUnexpectedWarnings();
    makeFolder();
    write(u"line.csv"_s, "value,angle\n0,-50\n100,50\n");
    write(u"bent.csv"_s, "0,0\n10,60\n40,90\n");
}

QList<gaugeLayer> tst_FitProgram::gauge(const QString &name) const
{
    QList<gaugeLayer> layers;
    gaugeFile::read(read(name), &layers, nullptr);
    return layers;
}

QJsonObject tst_FitProgram::report(const ProgramRun &run) const
{
    return QJsonDocument::fromJson(run.err).object();
}

void tst_FitProgram::writesAGauge()
{
    const ProgramRun fit = run("line.csv --labels 0,50,100 --minor 5 --output out/g.gauge");
    QCOMPARE(fit.status, 0);
    QCOMPARE(fit.out, QByteArray());
    QVERIFY(files().contains(u"out/g.gauge"_s));
    const QList<gaugeLayer> layers = gauge(u"out/g.gauge"_s);
    QCOMPARE(drawnLabels(layers), QStringList({u"0"_s, u"50"_s, u"100"_s}));
    for (const double value : {0.0, 50.0, 100.0})
        QVERIFY(isNear(angleOf(value, layers), value - 50.0, 0.25));
}

void tst_FitProgram::readsAndWritesStandardStreams()
{
    const ProgramRun toFile = run("line.csv --step 20 -o g.gauge");
    const ProgramRun piped = run("- --step 20 -o -", {.input = read(u"line.csv"_s)});
    QCOMPARE(piped.status, 0);
    QCOMPARE(toFile.status, 0);
    QVERIFY(!piped.out.isEmpty());
    QCOMPARE(piped.out, read(u"g.gauge"_s));
    QVERIFY(piped.err.startsWith("standard output: "));
}

void tst_FitProgram::filesCanBeNamedLikeStandardStreams()
{
    write(u"-"_s, read(u"line.csv"_s));
    const ProgramRun fromFile = run("./- --step 20 -o -");
    QCOMPARE(fromFile.status, 0);
    QVERIFY(!fromFile.out.isEmpty());
    const ProgramRun toFile = run("- --step 20 -o ./- --overwrite", {.input = read(u"line.csv"_s)});
    QCOMPARE(toFile.status, 0);
    QCOMPARE(read(u"-"_s), fromFile.out);
    // As a style it is a file.
    const ProgramRun style = run("line.csv --style - -o ./- --overwrite");
    QCOMPARE(style.err, QByteArray("corvalence-fit: ./- is read and is not replaced.\n"));
}

void tst_FitProgram::refusesToReplaceFiles()
{
    write(u"g.gauge"_s, "mine");
    const ProgramRun refused = run("line.csv --step 20 -o g.gauge");
    QCOMPARE(refused.err,
             "corvalence-fit: g.gauge already exists (--overwrite replaces it, --keep keeps it).\n");
    QCOMPARE(refused.status, 1);
    QCOMPARE(read(u"g.gauge"_s), QByteArray("mine"));

    QCOMPARE(run("line.csv --step 20 -o g.gauge --overwrite").status, 0);
    QVERIFY(!gauge().isEmpty());
}

void tst_FitProgram::refusesUnknownOptions()
{
    const ProgramRun fit = run("line.csv -o g.gauge --nonsense");
    QCOMPARE(fit.status, 2);
    QVERIFY(fit.err.startsWith("corvalence-fit: Unknown option 'nonsense'."));
    QVERIFY(!files().contains(u"g.gauge"_s));
}

void tst_FitProgram::replacesNoInput_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("input");
    QTest::newRow("the table") << u"line.csv -o line.csv"_s << u"line.csv"_s;
    QTest::newRow("the style") << u"line.csv --style s.gauge -o ./s.gauge"_s << u"s.gauge"_s;
    QTest::newRow("the gauge, by the angle table")
        << u"line.csv --into s.json --replace Look -o g.gauge --table s.json"_s << u"s.json"_s;
    QTest::newRow("the style's file") << u"line.csv --style s.gauge:Look -o s.gauge"_s << u"s.gauge"_s;
}

void tst_FitProgram::replacesNoInput()
{
    QFETCH(const QString, arguments);
    QFETCH(const QString, input);
    for (const QString &name : {u"s.gauge"_s, u"s.json"_s})
        write(name, gaugeFile::write({{u"Look"_s, {}}}));
    const QByteArray before = read(input);
    const ProgramRun fit = run(arguments.split(u' ') + QStringList{u"--overwrite"_s});
    QCOMPARE(fit.status, 1);
    QVERIFY2(fit.err.endsWith(" is read and is not replaced.\n"), fit.err.constData());
    QCOMPARE(read(input), before);
}

void tst_FitProgram::namesTheFileAndTheFault_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QByteArray>("error");
    const auto row = [](const char *arguments, const QByteArray &error) {
        QTest::newRow(arguments) << QString::fromLatin1(arguments) << error;
    };
    row("none.csv", "none.csv: No such file or directory");
    row(".", ".: It is a folder.");
    row("large.csv", "large.csv: It is larger than 1 MiB.");
    row("bad.csv", "bad.csv: line 3: the value 1 has the angle 3 here and 2 at line 2");
    row("turns.csv", "turns.csv: line 2: the value 1 has the angle 1e+06; angles are limited to 100 turns");
    row("line.csv --labels 0,200",
        "line.csv: the label 200 is beyond the points, which go from 0 to 100 (--extrapolate allows this)");
    row("line.csv --step 0.01",
        "line.csv: --step 0.01 gives more than 1000 labels within the points, which go from 0 to 100");
    row("short.csv --step 5", "short.csv: --step 5 gives no label within the points, which go from 1 to 2");
    row("line.csv --labels 0,0.3333333",
        "line.csv: the label 0.3333333 needs more than 6 decimals; use another unit");
    row("line.csv --labels 0,1e-7 --decimals 6",
        "line.csv: the label 1e-07 needs more than 6 decimals; use another unit");
    row("tiny.csv", "tiny.csv: the label 2e-08 needs more than 6 decimals; use another unit");
    row("narrow.json",
        "narrow.json: no round labels lie within the points, which go from 1 to 1 (--labels names others)");
    row("line.csv --labels 0,0.25,100 --decimals 1",
        "line.csv: the labels need 2 decimals, more than --decimals 1 writes");
    row("line.csv --range red:50:200", "line.csv: the range from 50 to 200 goes beyond the points, which go "
                                       "from 0 to 100 (--extrapolate allows this)");
    row("line.csv --style none.gauge", "none.gauge: No such file or directory");
    row("line.csv --style line.csv",
        "line.csv: It is not valid JSON, and does not look like a gauge file from an "
        "earlier version either.");
    row("line.csv --style s.gauge:Nix", "s.gauge: There is no layer \"Nix\". The layers are \"Look\".");
    row("line.csv --into s.gauge --replace Nix",
        "s.gauge: There is no layer \"Nix\". The layers are \"Look\".");
    row("line.csv --check none.gauge", "none.gauge: No such file or directory");
    row("bad.csv --check s.gauge", "bad.csv: line 3: the value 1 has the angle 3 here and 2 at line 2");
    row("line.csv --check s.gauge --layers Nix",
        "s.gauge: There is no layer \"Nix\". The layers are \"Look\".");
    row("line.csv --check blank.gauge", "blank.gauge: It has no label that could be checked.");
    row("line.csv --check many.gauge",
        "many.gauge: It has 2000000001 labels, more than the limit of 1000000.");
}

void tst_FitProgram::namesTheFileAndTheFault()
{
    QFETCH(const QString, arguments);
    QFETCH(const QByteArray, error);
    write(u"large.csv"_s, QByteArray(1024 * 1024 + 1, '#'));
    write(u"bad.csv"_s, "0,0\n1,2\n1,3\n");
    write(u"turns.csv"_s, "0,0\n1,1e6\n");
    write(u"short.csv"_s, "1,0\n2,90\n");
    write(u"tiny.csv"_s, "1e-9,-50\n1e-8,0\n1e-7,50\n");
    write(u"narrow.json"_s, R"({"scales": [{"points": [[1, 0], [1.0000000000000002, 90]]}]})");
    gaugeLayer look{u"Look"_s, {}};
    write(u"s.gauge"_s, gaugeFile::write({look}));
    look.data.divisionCount[0] = 2'000'000'000;
    write(u"many.gauge"_s, gaugeFile::write({look}));
    look.data.tickCountEnabled = false;
    write(u"blank.gauge"_s, gaugeFile::write({look}));
    const QStringList before = files();

    QStringList list = arguments.split(u' ');
    if (!list.contains(u"--check"_s))
        list += words("-o g.gauge");
    const ProgramRun fit = run(list);
    QCOMPARE(fit.err, "corvalence-fit: " + error + "\n");
    QCOMPARE(fit.status, 1);
    QCOMPARE(files(), before);
}

void tst_FitProgram::mapsReadings()
{
    write(u"percent.csv"_s, "0,0\n1,25\n2,100\n");
    QCOMPARE(run("percent.csv --map 0=-45 --map 100=45 --labels 0,1,2 -o g.gauge").status, 0);
    const QList<gaugeLayer> layers = gauge();
    QVERIFY(isNear(angleOf(0.0, layers), -45.0, 0.25));
    QVERIFY(isNear(angleOf(1.0, layers), -22.5, 0.25));
    QVERIFY(isNear(angleOf(2.0, layers), 45.0, 0.25));
}

void tst_FitProgram::drawsStraightLines()
{
    QCOMPARE(run("bent.csv --labels 0,25,40 -o smooth.gauge").status, 0);
    QCOMPARE(run("bent.csv --labels 0,25,40 --straight -o straight.gauge").status, 0);
    QVERIFY(isNear(angleOf(25.0, gauge(u"straight.gauge"_s)), 75.0, 0.25));
    QVERIFY(angleOf(25.0, gauge(u"smooth.gauge"_s)) > 76.0);
}

void tst_FitProgram::extrapolates()
{
    QCOMPARE(run("bent.csv --labels -10,0,40,70 --extrapolate -o g.gauge").status, 0);
    const QList<gaugeLayer> layers = gauge();
    QVERIFY(isNear(angleOf(-10.0, layers), -60.0, 0.25));
    QVERIFY(isNear(angleOf(70.0, layers), 120.0, 0.25));
}

void tst_FitProgram::choosesLabels_data()
{
    QTest::addColumn<QByteArray>("table");
    QTest::addColumn<QString>("option");
    QTest::addColumn<QStringList>("labels");
    QTest::newRow("equal steps") << QByteArray("0,-50\n100,50\n") << u"--minor=1"_s
                                 << u"0 10 20 30 40 50 60 70 80 90 100"_s.split(u' ');
    QTest::newRow("11 would overlap")
        << QByteArray("0,-35\n100,35\n") << u"--minor=1"_s << u"0 20 40 60 80 100"_s.split(u' ');
    QByteArray logarithm;
    for (int power = 0; power <= 12; ++power)
        logarithm +=
            QByteArray::number(std::pow(10.0, power / 4.0)) + ',' + QByteArray::number(power * 10) + '\n';
    QByteArray sixDecades;
    for (int power = 0; power <= 24; ++power)
        sixDecades += QByteArray::number(std::pow(10.0, power / 4.0), 'g', 17) + ',' +
                      QByteArray::number(power * 5) + '\n';
    QTest::newRow("six decades") << sixDecades << u"--minor=1"_s
                                 << u"1 10 100 1000 10000 100000 1000000"_s.split(u' ');
    const QStringList ofDecades = u"1 2 5 10 20 50 100 200 500 1000"_s.split(u' ');
    QTest::newRow("steps overlap") << logarithm << u"--minor=1"_s << ofDecades;
    QTest::newRow("steps overlap, extrapolated") << logarithm << u"--extrapolate"_s << ofDecades;
}

void tst_FitProgram::choosesLabels()
{
    QFETCH(const QByteArray, table);
    QFETCH(const QString, option);
    QFETCH(const QStringList, labels);
    write(u"t.csv"_s, table);
    const ProgramRun fit = run({u"t.csv"_s, option, u"-o"_s, u"g.gauge"_s, u"--report"_s, u"json"_s});
    QCOMPARE(fit.status, 0);
    QCOMPARE(drawnLabels(gauge()), labels);
    QCOMPARE(report(fit).value(u"overlaps").toArray(), QJsonArray());
}

void tst_FitProgram::givesLabelsTheDecimalsTheyNeed()
{
    QCOMPARE(run("line.csv --labels 0,0.25,50,100 -o g.gauge").status, 0);
    const QStringList short_ = drawnLabels(gauge());
    QVERIFY(short_.contains(u"0.25"_s));
    QVERIFY(short_.contains(u"100"_s));
    QCOMPARE(run("line.csv --labels 0,50,100 --decimals 1 -o g.gauge --overwrite").status, 0);
    QCOMPARE(drawnLabels(gauge()), QStringList({u"0.0"_s, u"50.0"_s, u"100.0"_s}));
}

void tst_FitProgram::writesLabelsWithoutSign()
{
    write(u"vu.csv"_s, "-20,-40\n0,20\n3,40\n");
    QCOMPARE(run("vu.csv --labels -20,-10,-5,0,1,3 --unsigned -o g.gauge").status, 0);
    QCOMPARE(drawnLabels(gauge()), u"20 10 5 0 1 3"_s.split(u' '));
    QCOMPARE(run("vu.csv --unsigned --check g.gauge").status, 0);
    QCOMPARE(run("vu.csv --check g.gauge").status, 1);
}

void tst_FitProgram::takesTheLookOfALayer_data()
{
    QTest::addColumn<QString>("style");
    QTest::addColumn<double>("radius");
    QTest::newRow("by name") << u"s.gauge:Small"_s << 0.5;
    QTest::newRow("the first with labels") << u"s.gauge"_s << 0.6;
    QTest::newRow("a layer without labels") << u"s.gauge:Face"_s << 0.4;
}

void tst_FitProgram::takesTheLookOfALayer()
{
    QFETCH(const QString, style);
    QFETCH(const double, radius);
    gaugeData look;
    look.divisionColor[1] = QColor(1, 2, 3);
    look.roundedTickCaps = true;
    look.tickCountRotate = true;
    look.tickCountFont = QFont(u"DejaVu Serif"_s, 7);
    gaugeData small = look;
    small.divisionInnerRadius[0] = 0.5;
    look.divisionInnerRadius[0] = 0.6;
    gaugeData face = look;
    face.tickCountEnabled = false;
    face.divisionInnerRadius[0] = 0.4;
    write(u"s.gauge"_s, gaugeFile::write({{u"Face"_s, face}, {u"Big"_s, look}, {u"Small"_s, small}}));

    QCOMPARE(run({u"line.csv"_s, u"--style"_s, style, u"--step"_s, u"20"_s, u"-o"_s, u"g.gauge"_s}).status,
             0);
    QCOMPARE(drawnLabels(gauge()), QStringList({u"0"_s, u"20"_s, u"40"_s, u"60"_s, u"80"_s, u"100"_s}));
    for (const gaugeLayer &layer : gauge()) {
        QCOMPARE(layer.data.divisionInnerRadius[0], radius);
        QCOMPARE(layer.data.divisionColor[1], QColor(1, 2, 3));
        QVERIFY(layer.data.roundedTickCaps);
        QVERIFY(layer.data.tickCountRotate);
        QCOMPARE(layer.data.tickCountFont.family(), u"DejaVu Serif"_s);
        for (const double length : layer.data.arcAngleLength)
            QCOMPARE(length, 0.0);
    }
}

void tst_FitProgram::replacesLayersOfAGauge()
{
    gaugeData scale;
    scale.divisionInnerRadius[0] = 0.6;
    scale.arcAngleLength = {360.0, 90.0, 0.0, 0.0};
    scale.arcRadius[0] = 0.3;
    write(u"panel.gauge"_s, gaugeFile::write({{u"Face"_s, sampleLayer()},
                                              {u"Old 1"_s, scale},
                                              {u"Middle"_s, sampleLayer()},
                                              {u"Old 2"_s, scale},
                                              {u"Needle"_s, sampleLayer()}}));
    QCOMPARE(run({u"line.csv"_s, u"--into"_s, u"panel.gauge"_s, u"--replace"_s, u"Old 2,Old 1"_s, u"--step"_s,
                  u"20"_s, u"-o"_s, u"panel.gauge"_s, u"--overwrite"_s})
                 .status,
             0);
    QList<gaugeLayer> layers = gauge(u"panel.gauge"_s);
    QCOMPARE(layers.takeFirst().name, u"Face"_s);
    QCOMPARE(layers.takeLast().name, u"Needle"_s);
    const gaugeLayer middle = layers.takeLast();
    QCOMPARE(middle.name, u"Middle"_s);
    QCOMPARE(middle.data.toJson(), sampleLayer().toJson());
    QCOMPARE(drawnLabels(layers), u"0 20 40 60 80 100"_s.split(u' '));
    // The look of the replaced layer stays, and its circle, but not the arc that marked values.
    QCOMPARE(layers.first().data.divisionInnerRadius[0], 0.6);
    QCOMPARE(layers.first().data.arcAngleLength, (std::array{360.0, 0.0, 0.0, 0.0}));
    QCOMPARE(layers.first().data.arcRadius[0], 0.3);
}

void tst_FitProgram::keepsTheCirclesOfReplacedLayers()
{
    gaugeData replaced;
    replaced.arcAngleLength = {360.0, 0.0, 0.0, 0.0};
    replaced.arcRadius[0] = 0.3;
    gaugeData style = replaced;
    style.arcRadius[0] = 0.9;
    style.divisionInnerRadius[0] = 0.5;
    write(u"panel.gauge"_s, gaugeFile::write({{u"Old"_s, replaced}}));
    write(u"s.gauge"_s, gaugeFile::write({{u"Style"_s, style}}));
    QCOMPARE(run("line.csv --into panel.gauge --replace Old --style s.gauge -o g.gauge").status, 0);
    const gaugeData fitted = gauge().first().data;
    QCOMPARE(fitted.divisionInnerRadius[0], 0.5);
    QCOMPARE(fitted.arcAngleLength[0], 360.0);
    QCOMPARE(fitted.arcRadius[0], 0.3);
}

void tst_FitProgram::drawsRangesBelowTheScale()
{
    QCOMPARE(run("line.csv --step 50 --range red:80:100 --range #00ff00:40:20 --range blue:0:1 --range "
                 "blue:1:2 --range blue:2:3 --range-radius 0.5 --range-width 7 -o g.gauge")
                 .status,
             0);
    const QList<gaugeLayer> layers = gauge();
    QCOMPARE(layers.at(0).name, u"Face"_s);
    QCOMPARE(layers.at(1).name, u"Ranges"_s);
    QCOMPARE(layers.at(2).name, u"Ranges"_s); // four arcs to a layer
    QVERIFY(layers.at(3).name.startsWith(u"Scale"_s));
    const gaugeData &arcs = layers.at(1).data;
    QCOMPARE(arcs.arcStartAngle, (std::array{30.0, -30.0, -50.0, -49.0}));
    QCOMPARE(arcs.arcAngleLength, (std::array{20.0, 20.0, 1.0, 1.0}));
    QCOMPARE(arcs.arcColor[0], QColor(Qt::red));
    QCOMPARE(arcs.arcColor[1], QColor(0, 255, 0));
    QCOMPARE(arcs.arcRadius[3], 0.5);
    QCOMPARE(arcs.arcWidth[3], 7.0);
    QCOMPARE(layers.at(2).data.arcAngleLength, (std::array{1.0, 0.0, 0.0, 0.0}));
    QCOMPARE(layers.at(3).data.arcAngleLength, (std::array{0.0, 0.0, 0.0, 0.0}));
}

void tst_FitProgram::writesTheCurveAsATable_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("json") << u"json"_s;
    QTest::newRow("xml") << u"xml"_s;
}

void tst_FitProgram::writesTheCurveAsATable()
{
    QFETCH(const QString, suffix);
    QCOMPARE(run({u"bent.csv"_s, u"--labels=-10,25,40"_s, u"--extrapolate"_s, u"-o"_s, u"g.gauge"_s,
                  u"--table"_s, u"t."_s + suffix})
                 .status,
             0);
    // Straight lines between the points of the table are as good as the curve, to 0.1 degrees.
    const ProgramRun check =
        run({u"t."_s + suffix, u"--straight"_s, u"--check"_s, u"g.gauge"_s, u"--max-error"_s, u"0.36"_s});
    QVERIFY2(check.status == 0, check.err.constData());
}

void tst_FitProgram::replacesNeitherFileIfOneExists()
{
    write(u"t.h"_s, "mine");
    QCOMPARE(run("line.csv -o g.gauge --table t.h").status, 1);
    QVERIFY(!files().contains(u"g.gauge"_s));
    QCOMPARE(run("line.csv -o g.gauge --table t.h --overwrite").status, 0);
    QVERIFY(read(u"t.h"_s).contains("g_tenths("));
}

void tst_FitProgram::refusesOneFileForBoth()
{
    write(u"g.gauge"_s, "mine");
    QVERIFY(QFile::link(u"g.gauge"_s, path(u"t.h"_s)));
    const ProgramRun fit = run("line.csv -o g.gauge --table t.h --overwrite");
    QCOMPARE(fit.err, QByteArray("corvalence-fit: g.gauge and t.h are the same file.\n"));
    QCOMPARE(fit.status, 1);
    QCOMPARE(read(u"g.gauge"_s), QByteArray("mine"));
}

void tst_FitProgram::keepsBothFilesIfOneExists_data()
{
    QTest::addColumn<QString>("existing");
    QTest::newRow("the gauge") << u"g.gauge"_s;
    QTest::newRow("the table") << u"t.xml"_s;
    QTest::newRow("the measured points") << u"line.csv"_s;
}

void tst_FitProgram::keepsBothFilesIfOneExists()
{
    QFETCH(const QString, existing);
    write(existing, "mine");
    const QStringList before = files();
    const QString output = existing == u"line.csv"_s ? existing : u"g.gauge"_s;
    const ProgramRun fit = run({u"line.csv"_s, u"-o"_s, output, u"--table"_s, u"t.xml"_s, u"--keep"_s});
    QCOMPARE(fit.status, 0);
    QCOMPARE(fit.err, QByteArray()); // no report of a gauge that was not made
    QCOMPARE(files(), before);
    QCOMPARE(read(existing), QByteArray("mine"));
}

void tst_FitProgram::reportsATableThatCannotBeWritten()
{
    const ProgramRun fit = run("line.csv -o g.gauge --table line.csv/t.xml");
    QCOMPARE(fit.status, 1);
    QCOMPARE(fit.err, QByteArray("corvalence-fit: The folder line.csv cannot be created: Not a directory\n"));
    QVERIFY(files().contains(u"g.gauge"_s));
}

void tst_FitProgram::reportsOnOneScreen()
{
    // No two gaps are alike, so that there are many layers.
    QByteArray table;
    QByteArray labels;
    for (int value = 0; value <= 40; ++value) {
        table += QByteArray::number(value * value) + ',' + QByteArray::number(value * 8) + '\n';
        labels += (value == 0 ? "" : ",") + QByteArray::number(value * value);
    }
    write(u"t.csv"_s, table);
    const ProgramRun fit =
        run({u"t.csv"_s, u"--labels"_s, QString::fromLatin1(labels), u"-o"_s, u"g.gauge"_s});
    QCOMPARE(fit.status, 0);
    QVERIFY(fit.err.count('\n') <= 24);
    QVERIFY(fit.err.startsWith("g.gauge: "));
    QVERIFY(fit.err.contains(", 41 labels, 41 marks in all\nWorst error: "));
}

void tst_FitProgram::reportsStrangeNamesOnOneLine()
{
    // Control characters, a line separator, a paragraph separator and one that turns the direction of text.
    const QString name = u"a\nb\x1b[31m\u2028\u2029\u202e.gauge"_s;
    const ProgramRun fit = run({u"line.csv"_s, u"--labels=0,100"_s, u"-o"_s, name});
    QVERIFY2(fit.err.startsWith("a?b?[31m???.gauge: 1 layer, "), fit.err.constData());
}

void tst_FitProgram::reportsLongNamesOnOneScreen()
{
    gaugeData scale;
    scale.divisionCount[0] = 100;
    write(u"g.gauge"_s, gaugeFile::write({{QString(100'000, u'x'), scale}}));
    const ProgramRun check = run("line.csv --check g.gauge");
    const QList<QByteArray> lines = check.err.split('\n');
    QVERIFY(lines.size() <= 24);
    for (const QByteArray &line : lines)
        QVERIFY2(QString::fromUtf8(line).size() < 160, line.constData());
}

void tst_FitProgram::escapesNamesInJson()
{
    write(u"g.gauge"_s, gaugeFile::write({{u"Ω\u202e😀\u2028"_s, {}}}));
    const ProgramRun check = run("line.csv --check g.gauge --report json");
    QVERIFY(std::ranges::all_of(check.err, [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); }));
    QCOMPARE(report(check).value(u"worst").toObject().value(u"layer").toString(), u"Ω\u202e😀\u2028"_s);
}

void tst_FitProgram::reportsNamesWithPercentSigns()
{
    const QString name = u"50%1%4.gauge"_s;
    const QByteArray made = run({u"line.csv"_s, u"--labels=0,100"_s, u"-o"_s, name}).err;
    QVERIFY2(made.startsWith("50%1%4.gauge: 1 layer, "), made.constData());
    const QByteArray checked = run({u"line.csv"_s, u"--check"_s, name}).err;
    QVERIFY2(checked.startsWith(
                 "50%1%4.gauge: 2 labels compared with line.csv, 0 off by more than 0.25 degrees\n"),
             checked.constData());
}

void tst_FitProgram::reportsOverlaps()
{
    const ProgramRun text = run("line.csv --labels 0,1,100 -o g.gauge");
    QVERIFY2(text.err.endsWith("\nLabels that overlap: 0 and 1\n"), text.err.constData());
    const QJsonObject json = report(run("line.csv --labels 0,1,100 -o g.gauge --overwrite --report json"));
    QCOMPARE(json.value(u"overlaps").toArray(), QJsonArray({QJsonValue(QJsonArray{u"0"_s, u"1"_s})}));
    QCOMPARE(json.value(u"labels").toInt(), 3);
    QCOMPARE(json.value(u"marks").toInt(), 3);
    QVERIFY(json.value(u"worstError").toDouble() <= json.value(u"maxError").toDouble());
}

void tst_FitProgram::checksGauges_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QStringList>("failures");
    const QStringList none;
    QTest::newRow("within the bound") << u"right.csv"_s << none;
    QTest::newRow("a turn further") << u"turn.csv"_s << none;
    QTest::newRow("off") << u"off.csv"_s
                         << QStringList{u"50 in \"Volts\": 0.000 degrees instead of 1.000, 1.000 off"_s};
    QTest::newRow("off, with a wider bound") << u"off.csv --max-error 1.01"_s << none;
    QTest::newRow("beyond the table")
        << u"short.csv"_s
        << QStringList{u"100 in \"Volts\": beyond the table (--extrapolate continues its curve)"_s};
    QTest::newRow("extrapolated") << u"short.csv --extrapolate"_s << none;
    QTest::newRow("another layer")
        << u"right.csv --layers Percent"_s
        << QStringList{u"0 in \"Percent\": 10.000 degrees instead of -50.000, 60.000 off"_s};
}

void tst_FitProgram::checksGauges()
{
    QFETCH(const QString, arguments);
    QFETCH(const QStringList, failures);
    gaugeData volts;
    volts.startAngle = -50.0;
    volts.angleLength = 100.0;
    volts.divisionCount[0] = 2;
    volts.tickCountIncrement = 50.0;
    gaugeData percent = volts;
    percent.startAngle = 10.0;
    percent.divisionCount[0] = 1;
    percent.angleLength = 360.0;
    QList<gaugeLayer> layers{{u"Volts"_s, volts}};
    if (arguments.contains(u"Percent"_s))
        layers.append({u"Percent"_s, percent});
    write(u"g.gauge"_s, gaugeFile::write(layers));
    write(u"right.csv"_s, "0,-50\n50,0\n100,50.2\n");
    write(u"turn.csv"_s, "0,310\n50,360\n100,410\n");
    write(u"off.csv"_s, "0,-50\n50,1\n100,50\n");
    write(u"short.csv"_s, "0,-50\n90,40\n");

    const ProgramRun check = run(arguments.split(u' ') + words("--check g.gauge"));
    QCOMPARE(check.status, failures.isEmpty() ? 0 : 1);
    QStringList lines = QString::fromUtf8(check.err).split(u'\n', Qt::SkipEmptyParts);
    QVERIFY(lines.takeFirst().startsWith(u"g.gauge: "_s));
    QVERIFY(lines.takeFirst().startsWith(u"Worst error: "_s));
    for (QString &line : lines)
        line = line.trimmed();
    QCOMPARE(lines, failures);
}

ADD_TEST_CLASS(tst_FitProgram)
#include "tst_fitprogram.moc"
