#include "dial.h"
#include "render/gaugepainter.h"
#include "support/testmain.h"

#include <QBuffer>
#include <QImage>
#include <QPainter>
#include <QRegularExpression>
#include <QSvgGenerator>
#include <QTest>
#include <QXmlStreamReader>

#include <array>
#include <cmath>
#include <functional>
#include <limits>

namespace {

using Kind = RecordedCall::Kind;
using Setter = std::function<void(gaugeData &, double)>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double mostDouble = std::numeric_limits<double>::max();
constexpr double leastPositive = std::numeric_limits<double>::denorm_min();
constexpr int leastInt = std::numeric_limits<int>::min();
constexpr int mostInt = std::numeric_limits<int>::max();

/// A layer that covers the inner half of the face with solid blue, and has a tick and turned labels besides.
gaugeData cover()
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

QByteArray svg(const QList<gaugeData> &layers)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setSize(QSize(512, 512));
    generator.setViewBox(QRect(0, 0, 512, 512));
    QPainter painter(&generator);
    paintGauge(painter, 512, layers);
    painter.end();
    return buffer.data();
}

bool isWellFormed(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    while (!reader.atEnd())
        reader.readNext();
    return !reader.hasError();
}

/// The calls without their transforms, which turning there and back may leave off by roundings.
QStringList withoutTransform(QList<RecordedCall> calls)
{
    for (RecordedCall &call : calls)
        call.transform.reset();
    return descriptions(calls);
}

/// How far a transform is from leaving everything where it is.
double offIdentity(const QTransform &transform)
{
    double most = 0.0;
    for (const double difference : {transform.m11() - 1.0, transform.m12(), transform.m21(),
                                    transform.m22() - 1.0, transform.dx(), transform.dy()})
        most = std::isnan(difference) ? infinity : std::max(most, std::abs(difference));
    return most;
}

/// Draws the odd layers on every kind of device, and a sound one over them, which must be there as ever.
void drawUnderACover(const QList<gaugeData> &odd)
{
    QList<gaugeData> layers = odd;
    layers.append(cover());

    const QImage image = picture(layers);
    for (const QPoint &inside : {QPoint(256, 256), QPoint(200, 200), QPoint(330, 256), QPoint(256, 340)})
        QCOMPARE(image.pixelColor(inside), QColor(Qt::blue));

    QVERIFY(isWellFormed(svg(layers)));

    const QList<RecordedCall> alone = paintedCalls({cover()}).sliced(1);
    const QList<RecordedCall> all = paintedCalls(layers);
    const QList<RecordedCall> last = all.last(alone.size());
    QCOMPARE(withoutTransform(last), withoutTransform(alone));
    QVERIFY(offIdentity(last.first().transform) < 1e-4);
}

} // namespace

/// Records that no form can make but a file can: every number is drawn as far as it can be, harms nothing
/// and takes no time worth mentioning.
class tst_PainterLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void anyDouble_data();
    void anyDouble();
    void anyCount_data();
    void anyCount();
    void anyDecimals_data();
    void anyDecimals();
    void anyFontSize_data();
    void anyFontSize();
    void invalidColors();
    void layerWithoutPositionsLeavesNoTrace_data();
    void layerWithoutPositionsLeavesNoTrace();
};

void tst_PainterLimits::init()
{
    // Qt itself remarks on an arc whose rectangle is no number, and draws nothing.
    static const QRegularExpression unexpected(
        QStringLiteral("^(?!QPainterPath::arcTo: Adding arc where a parameter is NaN)"));
    QTest::failOnWarning(unexpected);
}

void tst_PainterLimits::anyDouble_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<double>("value");
    const std::array<std::pair<const char *, Setter>, 15> fields{{
        {"startAngle", [](gaugeData &g, double x) { g.startAngle = x; }},
        {"angleLength", [](gaugeData &g, double x) { g.angleLength = x; }},
        {"bias, exponential", [](gaugeData &g, double x) { g.bias = x; }},
        {"bias, midpoint",
         [](gaugeData &g, double x) {
             g.bias = x;
             g.midpointBias = true;
         }},
        {"divisionInnerRadius",
         [](gaugeData &g, double x) {
             g.divisionInnerRadius = {x, x, x};
         }},
        {"divisionOuterRadius",
         [](gaugeData &g, double x) {
             g.divisionOuterRadius = {x, x, x};
         }},
        {"division radii",
         [](gaugeData &g, double x) {
             g.divisionInnerRadius = {x, -x, x};
             g.divisionOuterRadius = {-x, x, x};
         }},
        {"divisionLineWidth",
         [](gaugeData &g, double x) {
             g.divisionLineWidth = {x, x, x};
         }},
        {"arcStartAngle",
         [](gaugeData &g, double x) {
             g.arcStartAngle = {x, x, x, x};
         }},
        {"arcAngleLength",
         [](gaugeData &g, double x) {
             g.arcAngleLength = {x, x, x, x};
         }},
        {"arcRadius",
         [](gaugeData &g, double x) {
             g.arcRadius = {x, x, x, x};
         }},
        {"arcWidth",
         [](gaugeData &g, double x) {
             g.arcWidth = {x, x, x, x};
         }},
        {"tickCountStart", [](gaugeData &g, double x) { g.tickCountStart = x; }},
        {"tickCountIncrement", [](gaugeData &g, double x) { g.tickCountIncrement = x; }},
        {"tickCountRadius", [](gaugeData &g, double x) { g.tickCountRadius = x; }},
    }};
    const QList<double> values{
        notANumber,    infinity,      -infinity,      mostDouble, -mostDouble, 1e40, -1e40, 2147483648.0,
        -2147483649.0, 1e7,           -1e7,           33000.0,    -33000.0,    1e3,  -1e3,  1e-10,
        -1e-10,        leastPositive, -leastPositive, 0.0,        -0.0,        -1.0};
    for (const auto &[name, set] : fields) {
        for (const double value : values)
            QTest::addRow("%s %g", name, value) << set << value;
    }
}

void tst_PainterLimits::anyDouble()
{
    QFETCH(const Setter, set);
    QFETCH(const double, value);
    QList<gaugeData> layers{busyLayer(false), busyLayer(true)};
    for (gaugeData &layer : layers)
        set(layer, value);
    drawUnderACover(layers);

    // Every tick and label is asked for, wherever it may lie.
    const QList<RecordedCall> calls = paintedCalls({layers.first()});
    const bool fullCircle = std::abs(layers.first().angleLength) >= 360.0;
    QCOMPARE(ofKind(Kind::Line, calls).size(), (fullCircle ? 3 : 4) + 3 + 6);
    QCOMPARE(ofKind(Kind::Text, calls).size(), fullCircle ? 3 : 4);
}

void tst_PainterLimits::anyCount_data()
{
    QTest::addColumn<int>("primaries");
    QTest::addColumn<int>("secondaries");
    QTest::addColumn<int>("tertiaries");
    QTest::addColumn<double>("length");
    QTest::addColumn<int>("lines");
    QTest::newRow("least primaries") << leastInt << 2 << 2 << 120.0 << 0;
    QTest::newRow("least primaries, full circle") << leastInt << 2 << 2 << 360.0 << 0;
    QTest::newRow("one less than none") << -1 << 2 << 2 << 120.0 << 0;
    QTest::newRow("none") << 0 << 2 << 2 << 120.0 << 1;
    QTest::newRow("none, full circle") << 0 << 2 << 2 << 360.0 << 0;
    QTest::newRow("none, but most of the others") << 0 << mostInt << mostInt << 120.0 << 1;
    QTest::newRow("least primaries, but most of the others") << leastInt << mostInt << mostInt << 120.0 << 0;
    QTest::newRow("least secondaries") << 2 << leastInt << 2 << 120.0 << 3;
    QTest::newRow("least secondaries, most tertiaries") << 2 << leastInt << mostInt << 120.0 << 3;
    QTest::newRow("one secondary, most tertiaries") << 2 << 1 << mostInt << 120.0 << 3;
    QTest::newRow("least tertiaries") << 2 << 2 << leastInt << 120.0 << 5;
    QTest::newRow("all least") << leastInt << leastInt << leastInt << 120.0 << 0;
}

void tst_PainterLimits::anyCount()
{
    QFETCH(const int, primaries);
    QFETCH(const int, secondaries);
    QFETCH(const int, tertiaries);
    QFETCH(const double, length);
    QFETCH(const int, lines);
    gaugeData layer = busyLayer(true);
    layer.divisionCount = {primaries, secondaries, tertiaries};
    layer.angleLength = length;
    drawUnderACover({layer});
    QCOMPARE(paintedLines(layer).size(), lines);
}

void tst_PainterLimits::anyDecimals_data()
{
    QTest::addColumn<int>("decimals");
    for (const int decimals : {leastInt, -129, -128, -127, -1, 400, 1074, 1075, 1000000, mostInt})
        QTest::addRow("%d", decimals) << decimals;
}

void tst_PainterLimits::anyDecimals()
{
    QFETCH(const int, decimals);
    gaugeData layer = busyLayer(true);
    layer.tickCountDecimalPlaces = decimals;
    for (const double value : {0.1, mostDouble, leastPositive, infinity, notANumber}) {
        layer.tickCountStart = value;
        layer.tickCountIncrement = value;
        drawUnderACover({layer});
    }
}

void tst_PainterLimits::anyFontSize_data()
{
    QTest::addColumn<QFont>("font");
    for (const double points :
         {leastPositive, 1e-10, 0.1, 1.0, 999.0, 1e5, 1e9, 1e40, mostDouble, notANumber}) {
        QFont font(QStringLiteral("Sans Serif"));
        font.setPointSizeF(points);
        QTest::addRow("%g points", points) << font;
    }
    for (const int pixels : {1, 1000, 32768, 1000000, mostInt}) {
        QFont font(QStringLiteral("Sans Serif"));
        font.setPixelSize(pixels);
        QTest::addRow("%d pixels", pixels) << font;
    }
    QFont nameless;
    nameless.setFamilies({});
    QTest::newRow("without a family") << nameless;
    QTest::newRow("unknown family") << QFont(QStringLiteral("No Such Family 4711"), 10);
    QTest::newRow("odd family") << QFont(QString(10000, QLatin1Char(',')), 10);
}

void tst_PainterLimits::anyFontSize()
{
    QFETCH(const QFont, font);
    gaugeData upright = busyLayer(false);
    upright.tickCountFont = font;
    gaugeData turned = busyLayer(true);
    turned.tickCountFont = font;
    drawUnderACover({upright, turned});
}

void tst_PainterLimits::invalidColors()
{
    gaugeData layer = busyLayer(true);
    layer.divisionColor = {QColor(), QColor(), QColor()};
    layer.arcColor = {QColor(), QColor(), QColor(), QColor()};
    layer.tickCountColor = QColor();
    drawUnderACover({layer});
}

void tst_PainterLimits::layerWithoutPositionsLeavesNoTrace_data()
{
    QTest::addColumn<Setter>("set");
    QTest::newRow("no divisions") << Setter([](gaugeData &g, double) { g.divisionCount[0] = 0; });
    QTest::newRow("start angle") << Setter([](gaugeData &g, double) { g.startAngle = notANumber; });
    QTest::newRow("infinite start angle") << Setter([](gaugeData &g, double) { g.startAngle = infinity; });
    QTest::newRow("angle length") << Setter([](gaugeData &g, double) { g.angleLength = notANumber; });
    QTest::newRow("bias") << Setter([](gaugeData &g, double) {
        g.bias = notANumber;
        g.midpointBias = true;
    });
}

void tst_PainterLimits::layerWithoutPositionsLeavesNoTrace()
{
    QFETCH(const Setter, set);
    gaugeData bottom = busyLayer(true);
    bottom.arcAngleLength = {0.0, 0.0, 0.0, 0.0};
    set(bottom, 0.0);
    const gaugeData top = busyLayer(true);

    // Raster pictures agree to the last pixel, recorded calls to the last bit of their transforms.
    QCOMPARE(picture({bottom, top}), picture({top}));
    const QList<RecordedCall> alone = paintedCalls({top}).sliced(1);
    QCOMPARE(descriptions(paintedCalls({bottom, top}).last(alone.size())), descriptions(alone));
}

ADD_TEST_CLASS(tst_PainterLimits)
#include "tst_painterlimits.moc"
