#include "dial.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QPainter>
#include <QTest>

#include <cmath>

/// Where the arcs of a layer are drawn. tst_GaugePainter tests their pens and their order.
class tst_Arcs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void startsAndEndsAtItsAngles();
    void fullCircle();
    void anglesAreRoundedAndLimited();
};

namespace {

/// A layer with one arc and without ticks.
gaugeData layerWithArc(double start, double length)
{
    gaugeData layer;
    layer.angleLength = 360.0;
    layer.divisionCount[0] = 0;
    layer.arcAngleLength = {0.0, 0.0, 0.0, length};
    layer.arcStartAngle[3] = start;
    return layer;
}

QPainterPath paintedArc(const gaugeData &layer)
{
    return paintedCalls(RecordedCall::Kind::Path, layer).constFirst().path;
}

double gaugeAngle(const QPointF &point)
{
    return std::atan2(point.x() - 256.0, 256.0 - point.y()) * 180.0 / M_PI;
}

} // namespace

void tst_Arcs::startsAndEndsAtItsAngles()
{
    for (const auto &[start, length] : {std::pair(30.0, 60.0), {30.0, -60.0}, {-135.0, 270.0}}) {
        gaugeData layer = layerWithArc(start, length);
        layer.arcRadius[3] = 0.5;
        const QPainterPath path = paintedArc(layer);
        const QPointF first = path.elementAt(0);
        // Qt approximates arcs with Bezier curves.
        QVERIFY(std::abs(gaugeAngle(first) - start) < 0.01);
        QVERIFY(std::abs(gaugeAngle(path.currentPosition()) - (start + length)) < 0.01);
        QVERIFY(std::abs(QLineF(first, QPointF(256.0, 256.0)).length() - 125.0) < 0.1);
    }
}

void tst_Arcs::fullCircle()
{
    const QPainterPath path = paintedArc(layerWithArc(0.0, 360.0));
    QCOMPARE(path.currentPosition(), QPointF(path.elementAt(0)));
    QCOMPARE(path.boundingRect(), QRectF(6.0, 6.0, 500.0, 500.0));
}

void tst_Arcs::anglesAreRoundedAndLimited()
{
    struct Case
    {
        double start;
        double length;
        int startSixteenths;
        int spanSixteenths;
    };
    // 1/32 degree is half a sixteenth, which is rounded away from zero.
    for (const auto &[start, length, startSixteenths, spanSixteenths] :
         {Case{0.03, 0.03, 1440, 0}, Case{0.04, 0.04, 1439, -1}, Case{-0.03125, 0.03125, 1441, -1},
          Case{90.03125, -0.03125, -1, 1}, Case{0.0, -134217727.9375, 1440, maxInt},
          Case{0.0, -134217728.0, 1440, maxInt}, Case{1e9, 1e9, minInt, minInt},
          Case{-infinity, -infinity, maxInt, maxInt}, Case{notANumber, notANumber, 0, 0}}) {
        RecordingDevice device;
        QPainter painter(&device);
        painter.drawArc(QRectF(6.0, 6.0, 500.0, 500.0), startSixteenths, spanSixteenths);
        painter.end();
        const QList<RecordedCall> painted =
            paintedCalls(RecordedCall::Kind::Path, layerWithArc(start, length));
        QCOMPARE(painted.size(), device.calls().size()); // Qt does not draw a span of 0
        if (!painted.isEmpty())
            QCOMPARE(painted.first().path, device.calls().first().path);
    }
}

ADD_TEST_CLASS(tst_Arcs)
#include "tst_arcs.moc"
