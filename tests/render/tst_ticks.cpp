#include "dial.h"
#include "render/sweep.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

/// The angles that the lines of one colour point to, clockwise from 12 o'clock, in the order drawn; read off
/// the outer end, to a billionth of a degree.
QList<double> gaugeAngles(const gaugeData &layer, const QColor &color)
{
    QList<double> angles;
    const QList<RecordedCall> lines = paintedLines(layer);
    for (const RecordedCall &call : lines) {
        if (call.pen.color() != color)
            continue;
        const QPointF outer = call.line.p1();
        const double degrees = std::atan2(outer.x() - 256.0, 256.0 - outer.y()) * 180.0 / M_PI;
        const double rounded = std::round(degrees * 1e9) / 1e9;
        angles.append(rounded < 0.0 ? rounded + 360.0 : rounded + 0.0);
    }
    return angles;
}

struct Tick
{
    size_t ring;
    double angle;
};

/// Every tick of a layer in drawing order, worked out from the layer's numbers alone.
QList<Tick> expectedTicks(const gaugeData &layer)
{
    const double c1 = layer.divisionCount[0];
    const double c2 = layer.divisionCount[1];
    const double c3 = layer.divisionCount[2];
    const double base = 90.0 - layer.startAngle;
    const auto angleOf = [&](double t) {
        return base - layer.angleLength * biasedFraction(t, layer.bias, layer.midpointBias);
    };
    QList<Tick> ticks;
    const double last = std::abs(layer.angleLength) >= 360.0 ? c1 - 1.0 : c1;
    for (double i = 0.0; i <= last; ++i) {
        ticks.append({0, angleOf(i / c1)});
        if (c2 <= 1.0 || i == c1)
            continue;
        for (double j = 0.0; j < c2; ++j) {
            if (j > 0.0)
                ticks.append({1, angleOf((j / c2 + i) / c1)});
            for (double k = 1.0; k < c3; ++k)
                ticks.append({2, angleOf(((k / c3 + j) / c2 + i) / c1)});
        }
    }
    return ticks;
}

} // namespace

/// The division lines of a layer: where they lie, how many there are, and their pens.
class tst_Ticks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void quarterTurn();
    void fullCircleRule_data();
    void fullCircleRule();
    void negativeLengthRunsCounterClockwise();
    void secondaryHalvesEachGap();
    void fullCircleHasASecondaryBeforeItsStart();
    void subTickCounts_data();
    void subTickCounts();
    void tertiarySplitsTheFirstGapToo();
    void subTicksAreBiasedOneByOne();
    void biasGathersTicks();
    void everyEndIsExact_data();
    void everyEndIsExact();
    void ringsHaveTheirOwnRadii();
    void radiiMayBeNegativeOrPastTheRim();
    void pens_data();
    void pens();
    void noDivisionsGiveOnePass();
    void noDivisionsOnAFullCircleGiveNothing();
};

void tst_Ticks::quarterTurn()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 90.0;
    layer.divisionCount[0] = 2;
    const QList<RecordedCall> lines = paintedLines(layer);
    QCOMPARE(lines.size(), 3);
    QCOMPARE(lineText(lines.at(0).line), lineText({256.0, 6.0}, {256.0, 56.0}));
    QCOMPARE(lineText(lines.at(2).line), lineText({506.0, 256.0}, {456.0, 256.0}));
    const double half = std::sqrt(0.5);
    const QLineF middle = lines.at(1).line;
    QVERIFY(std::abs(middle.x1() - (256.0 + 250.0 * half)) < 1e-12);
    QVERIFY(std::abs(middle.y1() - (256.0 - 250.0 * half)) < 1e-12);
    QVERIFY(std::abs(middle.x2() - (256.0 + 200.0 * half)) < 1e-12);
    QVERIFY(std::abs(middle.y2() - (256.0 - 200.0 * half)) < 1e-12);
}

void tst_Ticks::fullCircleRule_data()
{
    QTest::addColumn<double>("length");
    QTest::addColumn<QList<double>>("angles");
    QTest::newRow("full circle") << 360.0 << QList<double>{0.0, 90.0, 180.0, 270.0};
    QTest::newRow("a degree less") << 359.0 << QList<double>{0.0, 89.75, 179.5, 269.25, 359.0};
    QTest::newRow("full circle counter-clockwise") << -360.0 << QList<double>{0.0, 270.0, 180.0, 90.0};
    QTest::newRow("a degree less counter-clockwise")
        << -359.0 << QList<double>{0.0, 270.25, 180.5, 90.75, 1.0};
    QTest::newRow("two turns") << 720.0 << QList<double>{0.0, 180.0, 0.0, 180.0};
}

void tst_Ticks::fullCircleRule()
{
    QFETCH(const double, length);
    QFETCH(const QList<double>, angles);
    gaugeData layer = ticksOnly();
    layer.angleLength = length;
    layer.divisionCount[0] = 4;
    QCOMPARE(gaugeAngles(layer, Qt::red), angles);
}

void tst_Ticks::negativeLengthRunsCounterClockwise()
{
    gaugeData layer = ticksOnly();
    layer.startAngle = 30.0;
    layer.angleLength = -90.0;
    layer.divisionCount = {3, 2, 1};
    QCOMPARE(gaugeAngles(layer, Qt::red), (QList<double>{30.0, 0.0, 330.0, 300.0}));
    QCOMPARE(gaugeAngles(layer, Qt::green), (QList<double>{15.0, 345.0, 315.0}));
}

void tst_Ticks::secondaryHalvesEachGap()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 120.0;
    layer.divisionCount = {4, 2, 1};
    // None after the closing tick at 120.
    QCOMPARE(gaugeAngles(layer, Qt::green), (QList<double>{15.0, 45.0, 75.0, 105.0}));
}

void tst_Ticks::fullCircleHasASecondaryBeforeItsStart()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 360.0;
    layer.divisionCount = {4, 2, 1};
    QCOMPARE(gaugeAngles(layer, Qt::green), (QList<double>{45.0, 135.0, 225.0, 315.0}));
}

void tst_Ticks::subTickCounts_data()
{
    QTest::addColumn<int>("secondaries");
    QTest::addColumn<int>("tertiaries");
    QTest::addColumn<int>("greens");
    QTest::addColumn<int>("blues");
    // Three gaps; n parts have n - 1 marks.
    QTest::newRow("ones draw nothing") << 1 << 1 << 0 << 0;
    QTest::newRow("none") << 0 << 0 << 0 << 0;
    QTest::newRow("negative") << -5 << -5 << 0 << 0;
    QTest::newRow("two") << 2 << 1 << 3 << 0;
    QTest::newRow("five") << 5 << 1 << 12 << 0;
    QTest::newRow("tertiary needs a secondary") << 1 << 4 << 0 << 0;
    QTest::newRow("tertiary without secondary") << 0 << 4 << 0 << 0;
    QTest::newRow("two by two") << 2 << 2 << 3 << 6;
    QTest::newRow("two by five") << 2 << 5 << 3 << 24;
    QTest::newRow("no tertiary") << 3 << 0 << 6 << 0;
    QTest::newRow("negative tertiary") << 3 << -2 << 6 << 0;
}

void tst_Ticks::subTickCounts()
{
    QFETCH(const int, secondaries);
    QFETCH(const int, tertiaries);
    QFETCH(const int, greens);
    QFETCH(const int, blues);
    gaugeData layer = ticksOnly();
    layer.divisionCount = {3, secondaries, tertiaries};
    QCOMPARE(gaugeAngles(layer, Qt::red).size(), 4);
    QCOMPARE(gaugeAngles(layer, Qt::green).size(), greens);
    QCOMPARE(gaugeAngles(layer, Qt::blue).size(), blues);
}

void tst_Ticks::tertiarySplitsTheFirstGapToo()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 80.0;
    layer.divisionCount = {2, 2, 2};
    QCOMPARE(gaugeAngles(layer, Qt::blue), (QList<double>{10.0, 30.0, 50.0, 70.0}));
}

void tst_Ticks::subTicksAreBiasedOneByOne()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 320.0;
    layer.bias = 0.25;
    layer.midpointBias = true;
    layer.divisionCount = {2, 2, 2};
    // With this bias the curve is t squared.
    QCOMPARE(gaugeAngles(layer, Qt::red), (QList<double>{0.0, 80.0, 320.0}));
    QCOMPARE(gaugeAngles(layer, Qt::green), (QList<double>{20.0, 180.0}));
    QCOMPARE(gaugeAngles(layer, Qt::blue), (QList<double>{5.0, 45.0, 125.0, 245.0}));
}

void tst_Ticks::biasGathersTicks()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 90.0;
    layer.divisionCount[0] = 2;
    layer.bias = 0.0;
    QCOMPARE(gaugeAngles(layer, Qt::red), (QList<double>{90.0, 90.0, 90.0}));
    layer.bias = 1.0;
    QCOMPARE(gaugeAngles(layer, Qt::red), (QList<double>{0.0, 0.0, 0.0}));
}

void tst_Ticks::everyEndIsExact_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("bias");
    QTest::addColumn<bool>("midpoint");
    QTest::addColumn<QList<int>>("counts");
    QTest::newRow("default") << 0.0 << 120.0 << 0.5 << false << QList<int>{4, 1, 1};
    QTest::newRow("typical") << -135.0 << 270.0 << 0.5 << false << QList<int>{10, 2, 5};
    QTest::newRow("odd thirds") << 12.3 << 77.7 << 0.5 << false << QList<int>{7, 3, 3};
    QTest::newRow("crowded start") << -120.5 << 241.0 << 0.2 << false << QList<int>{9, 4, 2};
    QTest::newRow("crowded end") << -120.5 << 241.0 << 0.8 << false << QList<int>{9, 4, 2};
    QTest::newRow("midpoint") << 200.0 << 300.0 << 0.9 << true << QList<int>{6, 5, 4};
    QTest::newRow("counter-clockwise") << 100.1 << -250.3 << 0.35 << false << QList<int>{8, 2, 3};
    QTest::newRow("full circle") << 33.0 << 360.0 << 0.6 << true << QList<int>{11, 3, 2};
    QTest::newRow("many turns") << 1e5 << -4000.7 << 0.5 << false << QList<int>{13, 2, 2};
    QTest::newRow("bias out of range") << 0.0 << 120.0 << 3.0 << true << QList<int>{5, 2, 2};
}

void tst_Ticks::everyEndIsExact()
{
    QFETCH(const double, start);
    QFETCH(const double, length);
    QFETCH(const double, bias);
    QFETCH(const bool, midpoint);
    QFETCH(const QList<int>, counts);
    gaugeData layer = ticksOnly();
    layer.startAngle = start;
    layer.angleLength = length;
    layer.bias = bias;
    layer.midpointBias = midpoint;
    layer.divisionOuterRadius = {1.0, 0.97, 0.93};
    layer.divisionInnerRadius = {0.8, 0.87, 0.91};
    for (size_t ring = 0; ring < 3; ++ring)
        layer.divisionCount[ring] = counts.at(qsizetype(ring));

    QStringList expected;
    const QList<Tick> ticks = expectedTicks(layer);
    for (const Tick &tick : ticks) {
        expected.append(lineText(dialPoint(250.0 * layer.divisionOuterRadius[tick.ring], tick.angle),
                                 dialPoint(250.0 * layer.divisionInnerRadius[tick.ring], tick.angle)) +
                        layer.divisionColor[tick.ring].name());
    }
    QStringList found;
    const QList<RecordedCall> lines = paintedLines(layer);
    for (const RecordedCall &call : lines)
        found.append(lineText(call.line) + call.pen.color().name());
    QCOMPARE(found, expected);
}

void tst_Ticks::ringsHaveTheirOwnRadii()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 360.0;
    layer.divisionCount = {1, 2, 2};
    // Ring 1 at 12 o'clock, ring 3 at a quarter, ring 2 at 6 o'clock.
    layer.divisionOuterRadius = {1.0, 0.5, 0.25};
    layer.divisionInnerRadius = {0.75, 0.375, 0.125};
    const QList<RecordedCall> lines = paintedLines(layer);
    QCOMPARE(lines.size(), 4);
    QCOMPARE(lineText(lines.at(0).line), lineText({256.0, 6.0}, {256.0, 68.5}));
    QCOMPARE(lineText(lines.at(1).line), lineText({318.5, 256.0}, {287.25, 256.0}));
    QVERIFY(std::abs(lines.at(2).line.y1() - 381.0) < 1e-12);
    QVERIFY(std::abs(lines.at(2).line.y2() - 349.75) < 1e-12);
}

void tst_Ticks::radiiMayBeNegativeOrPastTheRim()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 360.0;
    layer.divisionCount[0] = 1;
    layer.divisionOuterRadius[0] = 40.0;
    layer.divisionInnerRadius[0] = -1.0;
    const QList<RecordedCall> lines = paintedLines(layer);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lineText(lines.first().line), lineText(dialPoint(10000.0, 90.0), dialPoint(-250.0, 90.0)));
    QVERIFY(lines.first().line.y1() == -9744.0);
    QVERIFY(lines.first().line.y2() == 506.0);
}

void tst_Ticks::pens_data()
{
    QTest::addColumn<bool>("rounded");
    QTest::addColumn<Qt::PenCapStyle>("cap");
    QTest::newRow("flat") << false << Qt::FlatCap;
    QTest::newRow("round") << true << Qt::RoundCap;
}

void tst_Ticks::pens()
{
    QFETCH(const bool, rounded);
    QFETCH(const Qt::PenCapStyle, cap);
    gaugeData layer = ticksOnly();
    layer.angleLength = 360.0;
    layer.divisionCount = {1, 2, 2};
    layer.divisionLineWidth = {2.5, 0.0, 0.125};
    layer.divisionColor = {QColor(1, 2, 3, 4), QColor(50, 60, 70), QColor(200, 150, 100)};
    layer.roundedTickCaps = rounded;
    layer.roundedArcCaps = !rounded;
    const QList<RecordedCall> lines = paintedLines(layer);
    QCOMPARE(lines.size(), 4);
    QCOMPARE(penDescription(lines.at(0).pen), penDescription(dialPen(QColor(1, 2, 3, 4), 2.5, cap)));
    QCOMPARE(penDescription(lines.at(1).pen), penDescription(dialPen(QColor(200, 150, 100), 0.125, cap)));
    QCOMPARE(penDescription(lines.at(2).pen), penDescription(dialPen(QColor(50, 60, 70), 0.0, cap)));
    // A width of 0 is one device pixel at every scale.
    QVERIFY(!lines.at(0).pen.isCosmetic());
    QVERIFY(lines.at(2).pen.isCosmetic());
}

void tst_Ticks::noDivisionsGiveOnePass()
{
    gaugeData layer = ticksOnly();
    layer.divisionCount = {0, 4, 4};
    const QList<RecordedCall> lines = paintedLines(layer);
    QCOMPARE(lines.size(), 1);
    QCOMPARE(lines.first().pen.color(), QColor(Qt::red));
    QVERIFY(std::isnan(lines.first().line.x1()));
    QVERIFY(std::isnan(lines.first().line.y2()));
}

void tst_Ticks::noDivisionsOnAFullCircleGiveNothing()
{
    gaugeData layer = ticksOnly();
    layer.divisionCount = {0, 4, 4};
    layer.angleLength = 360.0;
    QVERIFY(paintedLines(layer).isEmpty());
}

ADD_TEST_CLASS(tst_Ticks)
#include "tst_ticks.moc"
