#include "dial.h"
#include "render/gaugepainter.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QPainter>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr int leastInt = std::numeric_limits<int>::min();
constexpr int mostInt = std::numeric_limits<int>::max();

/// A layer that draws nothing but its arcs, and so far none of them. (A full circle without divisions.)
gaugeData arcsOnly()
{
    gaugeData layer;
    layer.angleLength = 360.0;
    layer.divisionCount[0] = 0;
    layer.arcAngleLength = {0.0, 0.0, 0.0, 0.0};
    return layer;
}

QList<RecordedCall> paintedArcs(const gaugeData &layer)
{
    return paintedCalls({layer}).sliced(1);
}

double gaugeAngle(const QPointF &point)
{
    return std::atan2(point.x() - 256.0, 256.0 - point.y()) * 180.0 / M_PI;
}

} // namespace

/// The four coloured arcs of a layer.
class tst_Arcs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void lengthZeroIsNotDrawn();
    void runsClockwiseFromItsStart();
    void negativeLengthRunsBack();
    void fullCircleClosesInItself();
    void isDrawnAsAskedOfQt_data();
    void isDrawnAsAskedOfQt();
    void drawsAllFourInOrder();
    void ignoresTheSweep();
    void pens_data();
    void pens();
    void isNotFilled();
};

void tst_Arcs::lengthZeroIsNotDrawn()
{
    gaugeData layer = arcsOnly();
    layer.arcAngleLength = {0.0, -0.0, 1.0, 0.0};
    QCOMPARE(paintedArcs(layer).size(), 1);

    // Not even its pen is set.
    layer.arcAngleLength[2] = 0.0;
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, 512, {layer});
    QCOMPARE(painter.pen().color(), QColor(Qt::white));
}

void tst_Arcs::runsClockwiseFromItsStart()
{
    gaugeData layer = arcsOnly();
    layer.arcStartAngle[0] = 30.0;
    layer.arcAngleLength[0] = 60.0;
    layer.arcRadius[0] = 0.5;
    const QPainterPath path = paintedArcs(layer).first().path;
    const QPointF start = path.elementAt(0);
    // Qt draws arcs as curves that only follow the circle closely.
    QVERIFY(std::abs(gaugeAngle(start) - 30.0) < 0.01);
    QVERIFY(std::abs(gaugeAngle(path.currentPosition()) - 90.0) < 0.01);
    QVERIFY(std::abs(std::hypot(start.x() - 256.0, start.y() - 256.0) - 125.0) < 0.1);
}

void tst_Arcs::negativeLengthRunsBack()
{
    gaugeData layer = arcsOnly();
    layer.arcStartAngle[0] = 30.0;
    layer.arcAngleLength[0] = -60.0;
    const QPainterPath path = paintedArcs(layer).first().path;
    QVERIFY(std::abs(gaugeAngle(path.elementAt(0)) - 30.0) < 0.01);
    QVERIFY(std::abs(gaugeAngle(path.currentPosition()) + 30.0) < 0.01);
}

void tst_Arcs::fullCircleClosesInItself()
{
    gaugeData layer = arcsOnly();
    layer.arcAngleLength[2] = 360.0;
    const QPainterPath path = paintedArcs(layer).first().path;
    QVERIFY((path.currentPosition() - QPointF(path.elementAt(0))).manhattanLength() < 1e-9);
    // All the way round: it touches the face's rim on all sides.
    const QRectF bounds = path.boundingRect();
    QVERIFY(std::abs(bounds.left() - 6.0) < 1e-9);
    QVERIFY(std::abs(bounds.top() - 6.0) < 1e-9);
    QVERIFY(std::abs(bounds.right() - 506.0) < 1e-9);
    QVERIFY(std::abs(bounds.bottom() - 506.0) < 1e-9);
}

void tst_Arcs::isDrawnAsAskedOfQt_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("radius");
    QTest::addColumn<QRectF>("rectangle");
    QTest::addColumn<int>("startSixteenths");
    QTest::addColumn<int>("spanSixteenths");
    const QRectF rim(6.0, 6.0, 500.0, 500.0);
    QTest::newRow("default") << 0.0 << 120.0 << 1.0 << rim << 1440 << -1920;
    QTest::newRow("inner") << 0.0 << 10.0 << 0.25 << QRectF(193.5, 193.5, 125.0, 125.0) << 1440 << -160;
    QTest::newRow("no radius") << 0.0 << 10.0 << 0.0 << QRectF(256.0, 256.0, 0.0, 0.0) << 1440 << -160;
    QTest::newRow("negative radius") << 0.0 << 10.0 << -1.0 << QRectF(506.0, 506.0, -500.0, -500.0) << 1440
                                     << -160;
    QTest::newRow("rounded down") << 0.03 << 0.03 << 1.0 << rim << 1440 << 0;
    QTest::newRow("rounded up") << 0.04 << 0.04 << 1.0 << rim << 1439 << -1;
    // A 32nd of a degree is half a sixteenth: halves go away from zero.
    QTest::newRow("half") << -0.03125 << 0.03125 << 1.0 << rim << 1441 << -1;
    QTest::newRow("half below zero") << 90.03125 << -0.03125 << 1.0 << rim << -1 << 1;
    QTest::newRow("half of an even number") << 89.84375 << 0.15625 << 1.0 << rim << 3 << -3;
    QTest::newRow("a turn away") << 400.0 << 700.0 << 1.0 << rim << -4960 << -11200;
    QTest::newRow("most that fits") << 0.0 << -134217727.9375 << 1.0 << rim << 1440 << mostInt;
    QTest::newRow("more than fits") << 1e9 << 1e9 << 1.0 << rim << leastInt << leastInt;
    QTest::newRow("less than fits") << -1e9 << -1e9 << 1.0 << rim << mostInt << mostInt;
    QTest::newRow("one too many") << 0.0 << -134217728.0 << 1.0 << rim << 1440 << mostInt;
    QTest::newRow("infinite") << infinity << infinity << 1.0 << rim << leastInt << leastInt;
    QTest::newRow("negative infinite") << -infinity << -infinity << 1.0 << rim << mostInt << mostInt;
    QTest::newRow("not a number") << notANumber << notANumber << 1.0 << rim << 0 << 0;
}

void tst_Arcs::isDrawnAsAskedOfQt()
{
    QFETCH(const double, start);
    QFETCH(const double, length);
    QFETCH(const double, radius);
    QFETCH(const QRectF, rectangle);
    QFETCH(const int, startSixteenths);
    QFETCH(const int, spanSixteenths);
    gaugeData layer = arcsOnly();
    layer.arcStartAngle[3] = start;
    layer.arcAngleLength[3] = length;
    layer.arcRadius[3] = radius;
    layer.arcWidth[3] = 8.0;
    layer.arcColor[3] = Qt::cyan;
    const QList<RecordedCall> expected = bareCalls([=](QPainter &painter) {
        painter.setPen(dialPen(Qt::cyan, 8.0, Qt::FlatCap));
        painter.drawArc(rectangle, startSixteenths, spanSixteenths);
    });
    QCOMPARE(descriptions(paintedArcs(layer)), descriptions(expected));
}

void tst_Arcs::drawsAllFourInOrder()
{
    gaugeData layer = arcsOnly();
    layer.arcAngleLength = {10.0, 20.0, 30.0, 40.0};
    layer.arcColor = {Qt::red, Qt::green, Qt::blue, Qt::cyan};
    QList<QColor> colors;
    QList<double> lengths;
    const QList<RecordedCall> arcs = paintedArcs(layer);
    for (const RecordedCall &arc : arcs) {
        colors.append(arc.pen.color());
        lengths.append(std::round(gaugeAngle(arc.path.currentPosition())));
    }
    QCOMPARE(colors, (QList<QColor>{Qt::red, Qt::green, Qt::blue, Qt::cyan}));
    QCOMPARE(lengths, (QList<double>{10.0, 20.0, 30.0, 40.0}));
}

void tst_Arcs::ignoresTheSweep()
{
    gaugeData layer = arcsOnly();
    layer.arcAngleLength[0] = 75.0;
    layer.arcStartAngle[0] = 15.0;
    gaugeData elsewhere = layer;
    elsewhere.startAngle = 77.0;
    elsewhere.angleLength = -400.0;
    elsewhere.bias = 0.1;
    elsewhere.midpointBias = true;
    QCOMPARE(descriptions(paintedArcs(elsewhere)), descriptions(paintedArcs(layer)));
}

void tst_Arcs::pens_data()
{
    QTest::addColumn<bool>("rounded");
    QTest::addColumn<Qt::PenCapStyle>("cap");
    QTest::newRow("flat") << false << Qt::FlatCap;
    QTest::newRow("round") << true << Qt::RoundCap;
}

void tst_Arcs::pens()
{
    QFETCH(const bool, rounded);
    QFETCH(const Qt::PenCapStyle, cap);
    gaugeData layer = arcsOnly();
    layer.arcAngleLength = {10.0, 20.0, 30.0, 40.0};
    layer.arcWidth = {0.0, 12.5, 0.25, 100.0};
    layer.arcColor = {Qt::red, QColor(9, 8, 7, 6), QColor(), Qt::white};
    layer.roundedArcCaps = rounded;
    layer.roundedTickCaps = !rounded;
    const QList<RecordedCall> arcs = paintedArcs(layer);
    QCOMPARE(arcs.size(), 4);
    for (size_t i = 0; i < 4; ++i) {
        QCOMPARE(penDescription(arcs.at(qsizetype(i)).pen),
                 penDescription(dialPen(layer.arcColor[i], layer.arcWidth[i], cap)));
    }
    QVERIFY(arcs.at(0).pen.isCosmetic());
    QVERIFY(!arcs.at(2).pen.isCosmetic());
}

void tst_Arcs::isNotFilled()
{
    gaugeData layer = arcsOnly();
    layer.arcAngleLength[0] = 200.0;
    QCOMPARE(paintedArcs(layer).first().brush.style(), Qt::NoBrush);
}

ADD_TEST_CLASS(tst_Arcs)
#include "tst_arcs.moc"
