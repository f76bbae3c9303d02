#include "dial.h"
#include "render/gaugepainter.h"
#include "support/namedvalues.h"
#include "support/records.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QLoggingCategory>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

/// All drawing calls, compared with a reference, and the painter's state.
class tst_GaugePainter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void makesTheCallsOfTheReference_data();
    void makesTheCallsOfTheReference();
    void centreDot();
    void scale();
    void addsToTheTransform();
    void keepsTheLastPenFontAndBrush();
    void setsPenAndBrushWithoutLayers();
    void inactivePainter();
};

void tst_GaugePainter::makesTheCallsOfTheReference_data()
{
    QTest::addColumn<QList<gaugeData>>("layers");
    QTest::newRow("no layer") << QList<gaugeData>();
    QTest::newRow("samples") << QList<gaugeData>{gaugeData(), sampleLayer()};
    const auto row = [](const char *name, double start, double length, double bias, bool midpoint) {
        QList<gaugeData> layers{busyLayer(false), busyLayer(true)};
        for (gaugeData &layer : layers) {
            layer.startAngle = start;
            layer.angleLength = length;
            layer.bias = bias;
            layer.midpointBias = midpoint;
        }
        QTest::newRow(name) << layers;
    };
    row("even", 12.3, 77.7, 0.5, false);
    row("dense start", -120.5, 241.0, 0.2, false);
    row("dense end", -120.5, 241.0, 0.8, false);
    row("midpoint", 200.0, 300.0, 0.9, true);
    row("counter-clockwise", 100.1, -250.3, 0.35, false);
    row("full circle", 33.0, 360.0, 0.6, true);
    row("many turns", 1e5, -4000.7, 0.5, false);

    gaugeData odd = busyLayer(true);
    odd.divisionCount = {100, 3, 4};
    odd.divisionOuterRadius = {1.0, 0.97, 40.0};
    odd.divisionInnerRadius = {-0.8, 0.87, 0.91};
    odd.divisionColor = {QColor(1, 2, 3, 4), QColor(50, 60, 70), QColor()};
    odd.arcStartAngle = {-30.03, 0.04, 400.0, 90.03125};
    odd.arcAngleLength = {-0.0, 0.15625, -700.0, -0.03125};
    odd.arcRadius = {1.0, 0.25, 0.0, -1.0};
    odd.roundedArcCaps = false;
    odd.tickCountIncrement = 0.1;
    odd.tickCountDecimalPlaces = 16;
    odd.tickCountRadius = -0.333;
    odd.tickCountFont = QFont(u"Serif"_s, 30, QFont::Bold, true);
    QTest::newRow("odd values") << QList<gaugeData>{odd};
}

void tst_GaugePainter::makesTheCallsOfTheReference()
{
    QFETCH(const QList<gaugeData>, layers);
    for (const int size : {512, 1024})
        QCOMPARE(descriptions(paintedCalls(layers, size)), descriptions(referenceCalls(layers, size)));
}

void tst_GaugePainter::centreDot()
{
    const RecordedCall dot = paintedCalls({}).first();
    QCOMPARE(dot.rectangle, QRectF(253.0, 253.0, 6.0, 6.0));
    QCOMPARE(dot.brush, QBrush(Qt::white));
    QCOMPARE(dot.pen.color(), QColor(Qt::white));
    QVERIFY(dot.pen.isCosmetic());
    QVERIFY(dot.antialiased);
}

void tst_GaugePainter::scale()
{
    for (const int size : {64, 512, 4096, 0, -512, maxInt}) {
        RecordingDevice device;
        QPainter painter(&device);
        paintGauge(painter, size, {busyLayer(false)});
        const QTransform expected = QTransform::fromScale(size / 512.0, size / 512.0);
        QCOMPARE(painter.worldTransform(), expected);
        for (const RecordedCall &call : device.calls())
            QCOMPARE(call.transform, expected);
    }
}

void tst_GaugePainter::addsToTheTransform()
{
    RecordingDevice device;
    QPainter painter(&device);
    painter.translate(10.0, 20.0);
    paintGauge(painter, 1024, {});
    QCOMPARE(painter.worldTransform(), QTransform(2.0, 0.0, 0.0, 2.0, 10.0, 20.0));
    QVERIFY(painter.isActive());
}

void tst_GaugePainter::keepsTheLastPenFontAndBrush()
{
    gaugeData layer;
    layer.roundedTickCaps = true;
    layer.tickCountColor = Qt::magenta;
    layer.tickCountFont = QFont(u"Serif"_s, 21, QFont::Bold);
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, 512, {layer});
    QCOMPARE(painter.pen(), QPen(Qt::magenta, 0.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QCOMPARE(painter.font(), layer.tickCountFont);
    QCOMPARE(painter.brush(), QBrush(Qt::white, Qt::NoBrush));
    QVERIFY(painter.testRenderHint(QPainter::Antialiasing));
}

void tst_GaugePainter::setsPenAndBrushWithoutLayers()
{
    RecordingDevice device;
    QPainter painter(&device);
    painter.setPen(QPen(Qt::red, 4.0, Qt::DashLine));
    painter.setBrush(Qt::red);
    paintGauge(painter, 512, {});
    QCOMPARE(painter.pen(), QPen(Qt::white, 0.0, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    QCOMPARE(painter.brush(), QBrush(Qt::white, Qt::NoBrush));
}

void tst_GaugePainter::inactivePainter()
{
    QLoggingCategory::setFilterRules(u"default.warning=false"_s); // Qt warns about each call
    QPainter painter;
    paintGauge(painter, 512, {busyLayer(true)});
    QLoggingCategory::setFilterRules(QString());
    QVERIFY(!painter.isActive());
}

ADD_TEST_CLASS(tst_GaugePainter)
#include "tst_gaugepainter.moc"
