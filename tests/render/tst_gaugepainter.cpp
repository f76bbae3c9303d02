#include "dial.h"
#include "render/gaugepainter.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QLoggingCategory>
#include <QPainter>
#include <QTest>

#include <limits>

namespace {

using Kind = RecordedCall::Kind;

/// A layer with an arc, two primary ticks with labels, a secondary tick and two tertiary ones.
gaugeData layerWithEverything()
{
    gaugeData layer;
    layer.angleLength = 90.0;
    layer.divisionCount = {1, 2, 2};
    layer.divisionColor = {Qt::red, Qt::green, Qt::blue};
    layer.arcAngleLength = {90.0, 0.0, 30.0, 0.0};
    return layer;
}

/// What each call draws, in a word; lines by the colour of their pen.
QStringList outline(const QList<RecordedCall> &calls)
{
    QStringList words;
    for (const RecordedCall &call : calls) {
        switch (call.kind) {
        case Kind::Ellipse:
            words.append(QStringLiteral("dot"));
            break;
        case Kind::Path:
            words.append(QStringLiteral("arc ") + call.pen.color().name());
            break;
        case Kind::Line:
            words.append(QStringLiteral("line ") + call.pen.color().name());
            break;
        case Kind::Text:
            words.append(QStringLiteral("text ") + call.text);
            break;
        case Kind::Other:
            words.append(QStringLiteral("other"));
            break;
        }
    }
    return words;
}

} // namespace

/// The order of a drawing, its set-up, and what it leaves behind.
class tst_GaugePainter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void emptyStackDrawsOnlyTheCentreDot();
    void centreDotIsSolidWhite();
    void everythingIsAntialiased();
    void drawsInOrder();
    void laterLayersComeOverEarlierOnes();
    void scalesTheCanvas_data();
    void scalesTheCanvas();
    void geometryIsTheSameAtEverySize();
    void scalesOnTopOfTheCallersTransform();
    void leavesThePainterScaled();
    void leavesTheLastPenFontAndBrush();
    void leavesTheSetUpWhenThereAreNoLayers();
    void doesNotRestoreAnything();
    void doesNotEndThePainter();
    void doesNotBeginThePainter();
    void leavesTheRecordAlone();
};

void tst_GaugePainter::emptyStackDrawsOnlyTheCentreDot()
{
    QCOMPARE(outline(paintedCalls({})), QStringList{QStringLiteral("dot")});
}

void tst_GaugePainter::centreDotIsSolidWhite()
{
    const QList<RecordedCall> calls = paintedCalls({});
    QCOMPARE(calls.size(), 1);
    const RecordedCall &dot = calls.first();
    QVERIFY(dot.rectangle.left() == 253.0);
    QVERIFY(dot.rectangle.top() == 253.0);
    QVERIFY(dot.rectangle.width() == 6.0);
    QVERIFY(dot.rectangle.height() == 6.0);
    QCOMPARE(dot.brush, QBrush(Qt::white, Qt::SolidPattern));
    QCOMPARE(penDescription(dot.pen), penDescription(dialPen(Qt::white, 0.0, Qt::FlatCap)));
    QVERIFY(dot.pen.isCosmetic());
}

void tst_GaugePainter::everythingIsAntialiased()
{
    const QList<RecordedCall> calls = paintedCalls({layerWithEverything()});
    QVERIFY(!calls.isEmpty());
    for (const RecordedCall &call : calls)
        QVERIFY2(call.antialiased, qPrintable(call.description()));
}

void tst_GaugePainter::drawsInOrder()
{
    const QStringList expected{
        QStringLiteral("dot"),          QStringLiteral("arc #00ff00"),  QStringLiteral("arc #ff0000"),
        QStringLiteral("line #ff0000"), QStringLiteral("text 0"),       QStringLiteral("line #0000ff"),
        QStringLiteral("line #00ff00"), QStringLiteral("line #0000ff"), QStringLiteral("line #ff0000"),
        QStringLiteral("text 1"),
    };
    QCOMPARE(outline(paintedCalls({layerWithEverything()})), expected);
}

void tst_GaugePainter::laterLayersComeOverEarlierOnes()
{
    gaugeData bottom = ticksOnly();
    bottom.divisionCount[0] = 1;
    gaugeData top = bottom;
    top.divisionColor[0] = Qt::cyan;
    top.arcAngleLength[3] = 10.0;
    const QStringList expected{
        QStringLiteral("dot"),         QStringLiteral("line #ff0000"), QStringLiteral("line #ff0000"),
        QStringLiteral("arc #ffffff"), QStringLiteral("line #00ffff"), QStringLiteral("line #00ffff"),
    };
    QCOMPARE(outline(paintedCalls({bottom, top})), expected);
}

void tst_GaugePainter::scalesTheCanvas_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<double>("scale");
    QTest::newRow("smallest export") << 64 << 0.125;
    QTest::newRow("preview") << 512 << 1.0;
    QTest::newRow("between") << 544 << 1.0625;
    QTest::newRow("double") << 1024 << 2.0;
    QTest::newRow("largest export") << 4096 << 8.0;
    QTest::newRow("nothing") << 0 << 0.0;
    QTest::newRow("negative") << -512 << -1.0;
    QTest::newRow("most int") << std::numeric_limits<int>::max() << 2147483647.0 / 512.0;
}

void tst_GaugePainter::scalesTheCanvas()
{
    QFETCH(const int, size);
    QFETCH(const double, scale);
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, size, {layerWithEverything()});
    painter.end();
    for (const RecordedCall &call : device.calls()) {
        QVERIFY(call.transform.m11() == scale);
        QVERIFY(call.transform.m22() == scale);
        QVERIFY(call.transform.m12() == 0.0);
        QVERIFY(call.transform.m21() == 0.0);
        QVERIFY(call.transform.dx() == 0.0);
        QVERIFY(call.transform.dy() == 0.0);
    }
}

void tst_GaugePainter::geometryIsTheSameAtEverySize()
{
    gaugeData layer = layerWithEverything();
    layer.divisionLineWidth = {3.0, 2.0, 0.0};
    layer.arcWidth = {12.0, 0.0, 7.5, 0.0};
    const auto withoutScale = [](QList<RecordedCall> calls) {
        for (RecordedCall &call : calls)
            call.transform.reset();
        return descriptions(calls);
    };
    // Only the transform grows: every coordinate, pen width and label doubles with it.
    QCOMPARE(withoutScale(paintedCalls({layer}, 1024)), withoutScale(paintedCalls({layer}, 512)));
}

void tst_GaugePainter::scalesOnTopOfTheCallersTransform()
{
    RecordingDevice device;
    QPainter painter(&device);
    painter.translate(10.0, 20.0);
    paintGauge(painter, 1024, {});
    painter.end();
    QCOMPARE(device.calls().first().transform, QTransform(2.0, 0.0, 0.0, 2.0, 10.0, 20.0));
}

void tst_GaugePainter::leavesThePainterScaled()
{
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, 1024, {layerWithEverything()});
    QCOMPARE(painter.worldTransform(), QTransform::fromScale(2.0, 2.0));
    QVERIFY(painter.testRenderHint(QPainter::Antialiasing));
}

void tst_GaugePainter::leavesTheLastPenFontAndBrush()
{
    gaugeData layer = layerWithEverything();
    layer.roundedTickCaps = true;
    layer.tickCountColor = Qt::magenta;
    layer.tickCountFont = QFont(QStringLiteral("Serif"), 21, QFont::Bold);
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, 512, {layer});
    QCOMPARE(penDescription(painter.pen()), penDescription(dialPen(Qt::magenta, 0.0, Qt::RoundCap)));
    QCOMPARE(painter.font(), layer.tickCountFont);
    QCOMPARE(painter.brush(), QBrush(Qt::white, Qt::NoBrush));
}

void tst_GaugePainter::leavesTheSetUpWhenThereAreNoLayers()
{
    RecordingDevice device;
    QPainter painter(&device);
    painter.setPen(QPen(Qt::red, 4.0, Qt::DashLine));
    painter.setBrush(Qt::red);
    paintGauge(painter, 512, {});
    QCOMPARE(penDescription(painter.pen()), penDescription(dialPen(Qt::white, 0.0, Qt::FlatCap)));
    QCOMPARE(painter.brush(), QBrush(Qt::white, Qt::NoBrush));
}

void tst_GaugePainter::doesNotRestoreAnything()
{
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, 1024, {});
    paintGauge(painter, 1024, {});
    painter.end();
    // The second drawing starts from what the first one left.
    QCOMPARE(device.calls().last().transform, QTransform::fromScale(4.0, 4.0));
}

void tst_GaugePainter::doesNotEndThePainter()
{
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, 512, {layerWithEverything()});
    QVERIFY(painter.isActive());
}

void tst_GaugePainter::doesNotBeginThePainter()
{
    // As one whose device could not be painted on. Qt warns of every call.
    QLoggingCategory::setFilterRules(QStringLiteral("default.warning=false"));
    QPainter painter;
    paintGauge(painter, 512, {layerWithEverything()});
    QLoggingCategory::setFilterRules(QString());
    QVERIFY(!painter.isActive());
}

void tst_GaugePainter::leavesTheRecordAlone()
{
    const QList<gaugeData> layers{layerWithEverything()};
    QVERIFY(!paintedCalls(layers).isEmpty());
    QCOMPARE(layers.first().toJson(), layerWithEverything().toJson());
}

ADD_TEST_CLASS(tst_GaugePainter)
#include "tst_gaugepainter.moc"
