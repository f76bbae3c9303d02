#include "dial.h"
#include "render/gaugepainter.h"
#include "support/namedvalues.h"
#include "support/records.h"
#include "support/testmain.h"

#include <QBuffer>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgGenerator>
#include <QTest>
#include <QXmlStreamReader>

#include <cmath>

using namespace Qt::StringLiterals;

/// Values that the window does not allow, but that a file can contain: drawing ends soon, and other layers
/// are drawn as usual.
class tst_PainterLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void anyDouble_data();
    void anyDouble();
    void anyCount();
    void anyDecimals();
    void anyFont();
    void invalidColors();
    void ticksWithoutAPositionAreInvisible();
};

namespace {

using Kind = RecordedCall::Kind;

/// A layer that fills the inner half of the face with blue.
gaugeData blueLayer()
{
    gaugeData layer;
    layer.divisionCount[0] = 1;
    layer.arcAngleLength[0] = 360.0;
    layer.arcRadius[0] = 0.25;
    layer.arcWidth[0] = 125.0;
    layer.arcColor[0] = Qt::blue;
    layer.tickCountRotate = true;
    return layer;
}

bool isWellFormedSvg(const QList<gaugeData> &layers)
{
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    QPainter painter(&generator);
    paintGauge(painter, 512, layers);
    painter.end();
    QXmlStreamReader reader(buffer.data());
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

/// Draws the layers and a blue layer above them on all kinds of devices. The blue layer must look as usual.
void drawBelowBlueLayer(QList<gaugeData> layers)
{
    layers.append(blueLayer());
    const QImage image = picture(layers);
    for (const QPoint &inside : {QPoint(256, 256), QPoint(200, 200), QPoint(330, 256), QPoint(256, 340)})
        QCOMPARE(image.pixelColor(inside), QColor(Qt::blue));

    QVERIFY(isWellFormedSvg(layers));

    const QList<RecordedCall> alone = paintedCalls({blueLayer()}).sliced(1);
    const QList<RecordedCall> last = paintedCalls(layers).last(alone.size());
    for (qsizetype i = 0; i < alone.size(); ++i) {
        RecordedCall call = last.at(i);
        // Undoing the rotation of labels causes small rounding errors.
        QVERIFY((call.transform.map(QPointF(512.0, 512.0)) - alone.at(i).transform.map(QPointF(512.0, 512.0)))
                    .manhattanLength() < 1e-3);
        call.transform = alone.at(i).transform;
        QCOMPARE(call.description(), alone.at(i).description());
    }
}

} // namespace

void tst_PainterLimits::init()
{
    // Qt warns about arcs whose rectangle is NaN and does not draw them.
    QTest::failOnWarning(
        QRegularExpression(u"^(?!QPainterPath::arcTo: Adding arc where a parameter is NaN)"_s));
}

void tst_PainterLimits::anyDouble_data()
{
    QTest::addColumn<QString>("member");
    QTest::addColumn<double>("value");
    for (const char *member :
         {"startAngle", "angleLength", "bias", "divisionInnerRadius", "divisionOuterRadius",
          "divisionLineWidth", "arcStartAngle", "arcAngleLength", "arcRadius", "arcWidth", "tickCountStart",
          "tickCountIncrement", "tickCountRadius"}) {
        for (const double value :
             {notANumber, infinity, -infinity, maxDouble, -maxDouble, 1e40, -1e40, 2147483648.0,
              -2147483649.0, 1e7, -1e7, 33000.0, -1e3, 1e-10, smallestDouble, 0.0, -1.0})
            QTest::addRow("%s %g", member, value) << QString::fromLatin1(member) << value;
    }
}

void tst_PainterLimits::anyDouble()
{
    QFETCH(const QString, member);
    QFETCH(const double, value);
    QList<gaugeData> layers{busyLayer(false), busyLayer(true)};
    layers.last().midpointBias = true;
    for (gaugeData &layer : layers) {
        for (const GaugeField &field : gaugeFields()) {
            if (field.kind == GaugeField::Number && field.name.split('[').first() == member.toLatin1())
                field.set(layer, value);
        }
    }
    drawBelowBlueLayer(layers);

    const bool fullCircle = std::abs(layers.first().angleLength) >= 360.0;
    QCOMPARE(paintedCalls(Kind::Line, layers.first()).size(), (fullCircle ? 3 : 4) + 3 + 6);
    QCOMPARE(paintedCalls(Kind::Text, layers.first()).size(), fullCircle ? 3 : 4);
}

void tst_PainterLimits::anyCount()
{
    struct Case
    {
        std::array<int, 3> counts;
        double length;
        int lines;
    };
    for (const auto &[counts, length, lines] :
         {Case{{minInt, maxInt, maxInt}, 120.0, 0}, Case{{minInt, 2, 2}, 360.0, 0},
          Case{{-1, 2, 2}, 120.0, 0}, Case{{0, maxInt, maxInt}, 120.0, 1}, Case{{0, 2, 2}, 360.0, 0},
          Case{{2, minInt, maxInt}, 120.0, 3}, Case{{2, 1, maxInt}, 120.0, 3},
          Case{{2, 2, minInt}, 120.0, 5}}) {
        gaugeData layer = busyLayer(true);
        layer.divisionCount = counts;
        layer.angleLength = length;
        drawBelowBlueLayer({layer});
        QCOMPARE(paintedCalls(Kind::Line, layer).size(), lines);
    }
}

void tst_PainterLimits::anyDecimals()
{
    gaugeData layer = busyLayer(true);
    for (const int decimals : {minInt, -128, -1, 400, 1075, maxInt}) {
        for (const double value : {0.1, maxDouble, smallestDouble, infinity, notANumber}) {
            layer.tickCountDecimalPlaces = decimals;
            layer.tickCountStart = layer.tickCountIncrement = value;
            drawBelowBlueLayer({layer});
        }
    }
}

void tst_PainterLimits::anyFont()
{
    QList<QFont> fonts{QFont(u"No Such Family 4711"_s, 10), QFont(QString(10000, u','), 10)};
    for (const double points : {smallestDouble, 0.1, 1.0, 1e5, 1e9, maxDouble, notANumber})
        fonts.emplaceBack().setPointSizeF(points);
    for (const int pixels : {1, 32768, maxInt})
        fonts.emplaceBack().setPixelSize(pixels);
    fonts.emplaceBack().setFamilies({});
    for (const QFont &font : fonts) {
        QList<gaugeData> layers{busyLayer(false), busyLayer(true)};
        layers[0].tickCountFont = layers[1].tickCountFont = font;
        drawBelowBlueLayer(layers);
    }
}

void tst_PainterLimits::invalidColors()
{
    gaugeData layer = busyLayer(true);
    layer.divisionColor.fill(QColor());
    layer.arcColor.fill(QColor());
    layer.tickCountColor = QColor();
    drawBelowBlueLayer({layer});
}

void tst_PainterLimits::ticksWithoutAPositionAreInvisible()
{
    const gaugeData top = busyLayer(true);
    gaugeData bottom = top;
    bottom.arcAngleLength.fill(0.0);
    QList<gaugeData> layers(4, bottom);
    layers[0].divisionCount[0] = 0;
    layers[1].startAngle = notANumber;
    layers[2].startAngle = infinity;
    layers[3].angleLength = notANumber;
    for (const gaugeData &layer : layers) {
        QCOMPARE(picture({layer, top}), picture({top}));
        const QList<RecordedCall> alone = paintedCalls({top}).sliced(1);
        QCOMPARE(descriptions(paintedCalls({layer, top}).last(alone.size())), descriptions(alone));
    }
}

ADD_TEST_CLASS(tst_PainterLimits)
#include "tst_painterlimits.moc"
