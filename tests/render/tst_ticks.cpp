#include "dial.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>

/// Which ticks a layer has and where they are. tst_GaugePainter tests their exact ends and their pens.
class tst_Ticks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void endsOfAQuarterTurn();
    void angles_data();
    void angles();
    void subTickCounts();
    void noDivisions();
};

namespace {

using Kind = RecordedCall::Kind;
using Angles = QList<double>;

gaugeData layerWithTicks(double length, const std::array<int, 3> &counts)
{
    gaugeData layer = ticksOnly();
    layer.angleLength = length;
    layer.divisionCount = counts;
    return layer;
}

/// The angles of the ticks of one colour, in degrees clockwise from 12 o'clock.
Angles anglesOf(const gaugeData &layer, const QColor &color)
{
    Angles angles;
    for (const RecordedCall &call : paintedCalls(Kind::Line, layer)) {
        if (call.pen.color() != color)
            continue;
        const QPointF outer = call.line.p1();
        const double degrees = std::atan2(outer.x() - 256.0, 256.0 - outer.y()) * 180.0 / M_PI;
        const double rounded = std::round(degrees * 1e9) / 1e9;
        angles.append(rounded < 0.0 ? rounded + 360.0 : rounded + 0.0);
    }
    return angles;
}

} // namespace

void tst_Ticks::endsOfAQuarterTurn()
{
    const QList<RecordedCall> ticks = paintedCalls(Kind::Line, layerWithTicks(90.0, {2, 1, 1}));
    QCOMPARE(ticks.size(), 3);
    const double half = std::sqrt(0.5);
    QCOMPARE(ticks.at(0).line, QLineF(256.0, 6.0, 256.0, 56.0));
    QCOMPARE(ticks.at(1).line,
             QLineF(256.0 + 250.0 * half, 256.0 - 250.0 * half, 256.0 + 200.0 * half, 256.0 - 200.0 * half));
    QCOMPARE(ticks.at(2).line, QLineF(506.0, 256.0, 456.0, 256.0));
}

void tst_Ticks::angles_data()
{
    QTest::addColumn<gaugeData>("layer");
    QTest::addColumn<Angles>("primary");
    QTest::addColumn<Angles>("secondary");
    QTest::addColumn<Angles>("tertiary");
    const Angles none;
    QTest::newRow("full circle") << layerWithTicks(360.0, {4, 2, 1}) << Angles{0.0, 90.0, 180.0, 270.0}
                                 << Angles{45.0, 135.0, 225.0, 315.0} << none;
    QTest::newRow("359 degrees") << layerWithTicks(359.0, {4, 1, 1})
                                 << Angles{0.0, 89.75, 179.5, 269.25, 359.0} << none << none;
    QTest::newRow("full circle counter-clockwise")
        << layerWithTicks(-360.0, {4, 1, 1}) << Angles{0.0, 270.0, 180.0, 90.0} << none << none;
    QTest::newRow("two turns") << layerWithTicks(720.0, {4, 1, 1}) << Angles{0.0, 180.0, 0.0, 180.0} << none
                               << none;
    // There is no secondary tick after the last primary tick.
    QTest::newRow("all rings") << layerWithTicks(80.0, {2, 2, 2}) << Angles{0.0, 40.0, 80.0}
                               << Angles{20.0, 60.0} << Angles{10.0, 30.0, 50.0, 70.0};
    gaugeData back = layerWithTicks(-90.0, {3, 2, 1});
    back.startAngle = 30.0;
    QTest::newRow("counter-clockwise")
        << back << Angles{30.0, 0.0, 330.0, 300.0} << Angles{15.0, 345.0, 315.0} << none;
    gaugeData square = layerWithTicks(320.0, {2, 2, 2});
    square.bias = 0.25;
    square.midpointBias = true; // the curve is t squared
    QTest::newRow("each tick is biased")
        << square << Angles{0.0, 80.0, 320.0} << Angles{20.0, 180.0} << Angles{5.0, 45.0, 125.0, 245.0};
    gaugeData end = layerWithTicks(90.0, {2, 1, 1});
    end.bias = 0.0;
    QTest::newRow("bias 0") << end << Angles{90.0, 90.0, 90.0} << none << none;
}

void tst_Ticks::angles()
{
    QFETCH(const gaugeData, layer);
    QTEST(anglesOf(layer, Qt::red), "primary");
    QTEST(anglesOf(layer, Qt::green), "secondary");
    QTEST(anglesOf(layer, Qt::blue), "tertiary");
}

void tst_Ticks::subTickCounts()
{
    struct Case
    {
        int secondaries;
        int tertiaries;
        int greens;
        int blues;
    };
    // Three gaps. n parts have n - 1 ticks between them. Tertiary ticks need secondary ticks.
    for (const auto &[secondaries, tertiaries, greens, blues] :
         {Case{1, 1, 0, 0}, Case{-5, -5, 0, 0}, Case{2, 1, 3, 0}, Case{5, 1, 12, 0}, Case{1, 4, 0, 0},
          Case{0, 4, 0, 0}, Case{2, 5, 3, 24}, Case{3, -2, 6, 0}}) {
        const gaugeData layer = layerWithTicks(120.0, {3, secondaries, tertiaries});
        QCOMPARE(anglesOf(layer, Qt::red).size(), 4);
        QCOMPARE(anglesOf(layer, Qt::green).size(), greens);
        QCOMPARE(anglesOf(layer, Qt::blue).size(), blues);
    }
}

void tst_Ticks::noDivisions()
{
    const QList<RecordedCall> ticks = paintedCalls(Kind::Line, layerWithTicks(120.0, {0, 4, 4}));
    QCOMPARE(ticks.size(), 1);
    QCOMPARE(ticks.first().pen.color(), QColor(Qt::red));
    QVERIFY(std::isnan(ticks.first().line.x1()));
    QVERIFY(std::isnan(ticks.first().line.y2()));
    QVERIFY(paintedCalls(Kind::Line, layerWithTicks(360.0, {0, 4, 4})).isEmpty());
}

ADD_TEST_CLASS(tst_Ticks)
#include "tst_ticks.moc"
