#include "drawnscale.h"
#include "fit/scalefit.h"
#include "render/keyframes.h"
#include "render/sweep.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr double bound = 0.25; // degrees

using Function = double (*)(double);

// Movements of 90 degrees.

double seriesOhmmeter(double ohms)
{
    return 90.0 * ohms / (ohms + 10.0) - 45.0;
}

double vuMeter(double decibels)
{
    return 90.0 * std::pow(10.0, (decibels - 3.0) / 20.0) - 45.0;
}

double oneDecade(double value)
{
    return 90.0 * std::log10(value) - 45.0;
}

double threeDecades(double value)
{
    return 30.0 * std::log10(value) - 45.0;
}

/// A thermistor with B = 3950 and 10 kOhm at 25 degrees, in series with 10 kOhm.
double thermistor(double celsius)
{
    const double ratio = std::exp(3950.0 * (1.0 / (celsius + 273.15) - 1.0 / 298.15));
    return 90.0 / (1.0 + ratio) - 45.0;
}

double line(double value)
{
    return 0.9 * value - 45.0;
}

/// Half a turn of a servo, and then nothing.
double withStop(double value)
{
    return std::min(18.0 * value, 90.0);
}

/// A jump that no single sweep can follow.
double twoSteps(double value)
{
    return 20.0 * (std::tanh(40.0 * (value - 0.3)) + std::tanh(40.0 * (value - 0.7)));
}

double twoTurns(double value)
{
    return 72.0 * value - 30.0;
}

double falling(double value)
{
    return -seriesOhmmeter(value);
}

/// A curve through exact points, several for each mark.
ScaleCurve curveOf(Function function, const ScaleMarks &marks)
{
    constexpr int perGap = 60; // a multiple of all divisions in these tests
    QList<QPointF> points;
    for (qsizetype i = 0; i + 1 < marks.labels.size(); ++i) {
        for (int part = 0; part < perGap; ++part) {
            const double value =
                marks.labels.at(i) + (marks.labels.at(i + 1) - marks.labels.at(i)) * part / perGap;
            points.append({value, function(value)});
        }
    }
    points.append({marks.labels.last(), function(marks.labels.last())});
    return ScaleCurve(points);
}

ScaleMarks marksAt(const QList<double> &labels, int minor = 5, int subminor = 1)
{
    ScaleMarks marks{.labels = labels, .minor = minor, .subminor = subminor};
    marks.decimals = labelDecimals(labels);
    return marks;
}

/// Returns the layers of a scale. Fails the test if they do not draw the marks.
QList<gaugeLayer> layersOf(Function function, const ScaleMarks &marks)
{
    const ScaleCurve curve = curveOf(function, marks);
    const ScaleFit fit = fitScale(curve, marks, bound, rankedLook());
    const QString fault =
        fit.failure.isEmpty() ? faultOfDrawnScale(fit.layers, curve, marks, bound) : fit.failure;
    if (!QTest::qVerify(fault.isEmpty(), "the layers draw the marks", qPrintable(fault), __FILE__, __LINE__))
        return {};
    return fit.layers;
}

QStringList namesOf(const QList<gaugeLayer> &layers)
{
    QStringList names;
    for (const gaugeLayer &layer : layers)
        names.append(layer.name);
    return names;
}

bool hasTwoDecimals(double value)
{
    return std::abs(value * 100.0 - std::round(value * 100.0)) < 1e-9;
}

const QList<double> ohms{0, 1, 2, 5, 10, 20, 50, 100, 200};
const QList<double> decibels{-20, -10, -7, -5, -3, -2, -1, 0, 1, 2, 3};
const QList<double> decades{1, 2, 5, 10, 20, 50, 100, 200, 500, 1000};

} // namespace

/// The layers of a scale: few, exact, and fit for the editor.
class tst_ScaleFit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void fewLayers_data();
    void fewLayers();
    void findsTheBias_data();
    void findsTheBias();
    void worstErrorIsThatOfTheMarks();
    void worstValueIsThatOfAMark();
    void layersMeetAtAngles();
    void valuesThatTheFormShows();
    void noBiasBetweenTwoMarks();
    void layersAreNamedAfterTheirValues();
    void labelsAreTheWantedNumbers_data();
    void labelsAreTheWantedNumbers();
    void labelsWithoutSign();
    void copiesTheLook();
    void onlyTheFirstLayerHasArcs();
    void dividesAGap();
    void dividesAGapWithSubminorMarks();
    void singleLabel();
    void atMostAHundredDivisions();
    void failures_data();
    void failures();
    void errorTooSmallForTheNumbers();
};

void tst_ScaleFit::fewLayers_data()
{
    QTest::addColumn<Function>("function");
    QTest::addColumn<QList<double>>("labels");
    QTest::addColumn<int>("layers");

    QTest::newRow("series ohmmeter") << Function(seriesOhmmeter) << ohms << 7;
    QTest::newRow("series ohmmeter, equal steps")
        << Function(seriesOhmmeter) << steppedLabels(0.0, 20.0, 2.0) << 3;
    QTest::newRow("VU meter") << Function(vuMeter) << decibels << 4;
    QTest::newRow("one decade") << Function(oneDecade) << steppedLabels(1.0, 10.0, 1.0) << 4;
    QTest::newRow("three decades") << Function(threeDecades) << decades << 9;
    QTest::newRow("thermistor") << Function(thermistor) << steppedLabels(-20.0, 100.0, 10.0) << 3;
    QTest::newRow("line") << Function(line) << steppedLabels(0.0, 100.0, 10.0) << 1;
    QTest::newRow("falling") << Function(falling) << ohms << 7;
    QTest::newRow("stop") << Function(withStop) << steppedLabels(0.0, 10.0, 1.0) << 2;
    QTest::newRow("two turns") << Function(twoTurns) << steppedLabels(0.0, 10.0, 1.0) << 2;
}

void tst_ScaleFit::fewLayers()
{
    QFETCH(const Function, function);
    QFETCH(const QList<double>, labels);
    QFETCH(const int, layers);
    QCOMPARE(layersOf(function, marksAt(labels)).size(), layers);
}

void tst_ScaleFit::findsTheBias_data()
{
    QTest::addColumn<bool>("midpoint");
    QTest::newRow("exponential") << false;
    QTest::newRow("midpoint") << true;
}

void tst_ScaleFit::findsTheBias()
{
    QFETCH(const bool, midpoint);
    const ScaleMarks marks = marksAt(steppedLabels(0.0, 100.0, 10.0));
    gaugeData sweep;
    sweep.startAngle = -45.0;
    sweep.angleLength = 90.0;
    sweep.midpointBias = midpoint;
    // Not only amounts with two decimals.
    for (sweep.bias = 0.05; sweep.bias <= 0.95; sweep.bias += 0.0077) {
        QList<QPointF> points;
        for (int i = 0; i <= 50; ++i)
            points.append({2.0 * i, 90.0 - tickAngle(sweep, i / 50.0)});
        const ScaleFit fit = fitScale(ScaleCurve(points), marks, bound, gaugeData());
        const QByteArray amount = QByteArray::number(sweep.bias);
        QVERIFY2(fit.layers.size() == 1, amount);
        QVERIFY2(std::abs(fit.layers.first().data.bias - sweep.bias) < 0.001, amount);
    }
}

void tst_ScaleFit::worstErrorIsThatOfTheMarks()
{
    const ScaleMarks marks = marksAt(steppedLabels(0.0, 20.0, 2.0), 1);
    const ScaleCurve curve = curveOf(seriesOhmmeter, marks);
    const ScaleFit fit = fitScale(curve, marks, bound, gaugeData());
    double worstError = 0.0;
    double worstValue = 0.0;
    for (const gaugeLayer &layer : fit.layers) {
        for (const QPointF &frame : keyframes(layer.data)) {
            const double error = std::abs(frame.y() - curve.angle(frame.x()));
            if (error > worstError) {
                worstError = error;
                worstValue = frame.x();
            }
        }
    }
    QVERIFY(worstError > 0.01);
    QVERIFY(worstError <= bound);
    QCOMPARE(fit.worstError, worstError);
    QCOMPARE(fit.worstValue, worstValue);
}

void tst_ScaleFit::worstValueIsThatOfAMark()
{
    const QList<double> labels{1.0, 2.0, 3.0};
    const ScaleFit fit =
        fitScale(ScaleCurve({{1.0, 0.0}, {3.0, 90.0}}), marksAt(labels, 1), bound, gaugeData());
    QCOMPARE(fit.worstError, 0.0);
    QVERIFY(labels.contains(fit.worstValue));
}

void tst_ScaleFit::layersMeetAtAngles()
{
    const QList<gaugeLayer> layers = layersOf(vuMeter, marksAt(decibels));
    QCOMPARE(layers.size(), 4);
    for (qsizetype i = 1; i < layers.size(); ++i) {
        const QPointF end = keyframes(layers.at(i - 1).data).last();
        const QPointF start = keyframes(layers.at(i).data).first();
        QCOMPARE(start.x(), end.x());
        QVERIFY(std::abs(start.y() - end.y()) < 1e-9);
        QVERIFY(layers.at(i).data.tickCountSkipFirst);
    }
    QVERIFY(!layers.first().data.tickCountSkipFirst);
}

void tst_ScaleFit::valuesThatTheFormShows()
{
    for (const Function function : {seriesOhmmeter, twoTurns}) {
        const QList<gaugeLayer> layers = layersOf(function, marksAt(steppedLabels(0.0, 10.0, 1.0)));
        QVERIFY(!layers.isEmpty());
        for (const gaugeLayer &layer : layers) {
            QVERIFY(hasTwoDecimals(layer.data.startAngle));
            QVERIFY(hasTwoDecimals(layer.data.angleLength));
            QVERIFY(std::abs(layer.data.startAngle) <= 360.0);
            QVERIFY(std::abs(layer.data.angleLength) <= 360.0);
            QVERIFY(hasTwoDecimals(layer.data.bias));
            QVERIFY(layer.data.bias >= 0.0 && layer.data.bias <= 1.0);
        }
    }
}

void tst_ScaleFit::noBiasBetweenTwoMarks()
{
    const QList<gaugeLayer> layers = layersOf(threeDecades, marksAt(decades, 1));
    QVERIFY(layers.size() > 1);
    for (const gaugeLayer &layer : layers) {
        QCOMPARE(layer.data.divisionCount[0], 1);
        QCOMPARE(layer.data.bias, 0.5);
    }
}

void tst_ScaleFit::layersAreNamedAfterTheirValues()
{
    QCOMPARE(
        namesOf(layersOf(vuMeter, marksAt(decibels))),
        QStringList({u"Scale -20 to -10"_s, u"Scale -10 to -7"_s, u"Scale -7 to -3"_s, u"Scale -3 to 3"_s}));
}

void tst_ScaleFit::labelsAreTheWantedNumbers_data()
{
    QTest::addColumn<double>("min");
    QTest::addColumn<double>("max");
    QTest::addColumn<double>("step");
    QTest::newRow("tenths") << 0.0 << 2.0 << 0.1;
    QTest::newRow("tenths through zero") << -0.7 << 0.7 << 0.1;
    QTest::newRow("hundredths through zero") << -0.49 << 0.3 << 0.07;
    QTest::newRow("large") << 1e6 << 1.9e6 << 1e5;
}

void tst_ScaleFit::labelsAreTheWantedNumbers()
{
    QFETCH(const double, min);
    QFETCH(const double, max);
    QFETCH(const double, step);
    const ScaleMarks marks = marksAt(steppedLabels(min, max, step), 1);
    const ScaleCurve curve({{min - step, 0.0}, {max + step, 90.0}});
    const ScaleFit fit = fitScale(curve, marks, bound, rankedLook());
    QCOMPARE(fit.layers.size(), 1);
    const QList<QPointF> frames = keyframes(fit.layers.first().data);
    QCOMPARE(frames.size(), marks.labels.size());
    for (qsizetype i = 0; i < frames.size(); ++i)
        QVERIFY(std::abs(frames.at(i).x() - marks.labels.at(i)) < 1e-9 * step);
    // No "-0.0" either.
    QCOMPARE(faultOfDrawnScale(fit.layers, curve, marks, bound), QString());
}

void tst_ScaleFit::labelsWithoutSign()
{
    ScaleMarks marks = marksAt(decibels);
    marks.withoutSign = true;
    // One layer more: the labels -3 to 3 go down and up again.
    QCOMPARE(namesOf(layersOf(vuMeter, marks)).sliced(3),
             QStringList({u"Scale -3 to 0"_s, u"Scale 0 to 3"_s}));
}

void tst_ScaleFit::copiesTheLook()
{
    gaugeData look;
    look.divisionInnerRadius = {0.5, 0.6, 0.7};
    look.roundedTickCaps = true;
    look.tickCountRadius = 0.4;
    look.tickCountRotate = true;
    look.tickCountFont = QFont(u"DejaVu Serif"_s, 17);
    const ScaleMarks marks = marksAt(ohms);
    const ScaleFit fit = fitScale(curveOf(seriesOhmmeter, marks), marks, bound, look);
    QVERIFY(!fit.layers.isEmpty());
    for (const gaugeLayer &layer : fit.layers) {
        QCOMPARE(layer.data.divisionInnerRadius, look.divisionInnerRadius);
        QCOMPARE(layer.data.roundedTickCaps, true);
        QCOMPARE(layer.data.tickCountRadius, 0.4);
        QCOMPARE(layer.data.tickCountRotate, true);
        QCOMPARE(layer.data.tickCountFont, look.tickCountFont);
    }
}

void tst_ScaleFit::onlyTheFirstLayerHasArcs()
{
    gaugeData look;
    look.arcAngleLength = {360.0, 0.0, 10.0, 0.0};
    const ScaleMarks marks = marksAt(decibels);
    const ScaleFit fit = fitScale(curveOf(vuMeter, marks), marks, bound, look);
    QCOMPARE(fit.layers.size(), 4);
    QCOMPARE(fit.layers.first().data.arcAngleLength, look.arcAngleLength);
    for (qsizetype i = 1; i < fit.layers.size(); ++i)
        QCOMPARE(fit.layers.at(i).data.arcAngleLength, (std::array<double, 4>{}));
}

void tst_ScaleFit::dividesAGap()
{
    const QList<gaugeLayer> layers = layersOf(twoSteps, marksAt({0.0, 1.0}, 20));
    QCOMPARE(layers.size(), 6);
    QCOMPARE(layers.first().name, u"Scale 0"_s);
    QCOMPARE(layers.at(1).name, u"Scale 0.05 to 0.25"_s);
    QVERIFY(!layers.at(1).data.tickCountEnabled);
}

void tst_ScaleFit::dividesAGapWithSubminorMarks()
{
    const QList<gaugeLayer> layers = layersOf(twoSteps, marksAt({0.0, 1.0}, 10, 2));
    // The subminor marks beside the labels are in layers of a single mark.
    QCOMPARE(layers.size(), 8);
    QCOMPARE(layers.at(1).name, u"Scale 0.05"_s);
    QCOMPARE(layers.at(2).name, u"Scale 0.1 to 0.3"_s);
}

void tst_ScaleFit::singleLabel()
{
    const ScaleMarks marks = marksAt({3.0}, 1);
    const ScaleCurve curve({{0.0, 0.0}, {4.0, 40.0}});
    const ScaleFit fit = fitScale(curve, marks, bound, rankedLook());
    QCOMPARE(faultOfDrawnScale(fit.layers, curve, marks, bound), QString());
    QCOMPARE(namesOf(fit.layers), QStringList(u"Scale 3"_s));
}

void tst_ScaleFit::atMostAHundredDivisions()
{
    const QList<gaugeLayer> layers = layersOf(line, marksAt(steppedLabels(0.0, 150.0, 1.0), 1));
    QCOMPARE(layers.size(), 2);
    for (const gaugeLayer &layer : layers)
        QVERIFY(layer.data.divisionCount[0] <= 100);
}

void tst_ScaleFit::failures_data()
{
    QTest::addColumn<ScaleMarks>("marks");
    QTest::addColumn<double>("maxError");
    QTest::addColumn<QString>("failure");

    const ScaleMarks good = marksAt({0.0, 1.0});
    const auto row = [](const char *name, const ScaleMarks &marks, double maxError, const QString &failure) {
        QTest::newRow(name) << marks << maxError << failure;
    };
    row("no error allowed", good, 0.0, u"the largest error is not a positive number"_s);
    row("error of NaN", good, qQNaN(), u"the largest error is not a positive number"_s);
    row("infinite error", good, qInf(), u"the largest error is not a positive number"_s);
    row("no labels", marksAt({}), bound, u"there are no labels"_s);
    row("too many labels", marksAt(QList<double>(1001)), bound, u"there are more than 1000 labels"_s);
    row("too many marks", marksAt({0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0}, 100, 100), bound,
        u"there are more than 100000 marks"_s);
    row("no minor part", marksAt({0.0, 1.0}, 0), bound, u"gaps are divided into 1 to 100 parts, not 0"_s);
    row("too many parts", marksAt({0.0, 1.0}, 5, 101), bound,
        u"gaps are divided into 1 to 100 parts, not 101"_s);
    row("subminor marks only", marksAt({0.0, 1.0}, 1, 2), bound, u"there are no minor parts to divide"_s);
    row("label of NaN", marksAt({0.0, qQNaN()}), bound, u"a label is not a finite number"_s);
    row("equal labels", marksAt({0.0, 2.5, 2.5}), bound, u"label 2.5 does not ascend"_s);
    row("falling labels", marksAt({3.0, 2.0}), bound, u"label 2 does not ascend"_s);
    row("beyond the curve", marksAt({0.0, 20.0}), bound, u"the curve has no angle at 12"_s);
}

void tst_ScaleFit::failures()
{
    QFETCH(const ScaleMarks, marks);
    QFETCH(const double, maxError);
    const ScaleCurve curve({{0.0, -30.1}, {3.3, 17.7}, {10.0, 60.0}});
    const ScaleFit fit = fitScale(curve, marks, maxError, gaugeData());
    QTEST(fit.failure, "failure");
    QVERIFY(fit.layers.isEmpty());
}

void tst_ScaleFit::errorTooSmallForTheNumbers()
{
    const ScaleCurve curve({{0.0, -30.1}, {3.3, 17.7}, {10.0, 60.0}});
    const ScaleFit fit = fitScale(curve, marksAt({0.0, 1.0}, 1), 1e-17, gaugeData());
    QVERIFY2(fit.failure.startsWith(u"the mark at 1 would be"_s), qPrintable(fit.failure));
    QVERIFY(fit.layers.isEmpty());
}

ADD_TEST_CLASS(tst_ScaleFit)
#include "tst_scalefit.moc"
