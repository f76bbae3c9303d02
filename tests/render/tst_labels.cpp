#include "dial.h"
#include "render/gaugepainter.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

using Kind = RecordedCall::Kind;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

/// Labels on five ticks from 12 o'clock to 4 o'clock.
gaugeData labelled()
{
    gaugeData layer = ticksOnly();
    layer.tickCountEnabled = true;
    layer.tickCountColor = Qt::magenta;
    layer.tickCountFont = QFont(QStringLiteral("Sans Serif"), 14);
    return layer;
}

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

QList<RecordedCall> paintedLabels(const gaugeData &layer, int size = 512)
{
    return ofKind(Kind::Text, paintedCalls({layer}, size));
}

/// The middle of a drawn text's box, mapped as it was drawn.
QPointF middle(const RecordedCall &label)
{
    const double width = label.textWidth;
    const double top = label.position.y() - label.ascent;
    const double bottom = label.position.y() + label.descent;
    return label.transform.map(QPointF(label.position.x() + width / 2.0, (top + bottom) / 2.0));
}

/// The part of a picture that labels cover, in the pixels of a picture of @a size.
QRect covered(const gaugeData &layer, int size, const PaintStyle &style)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintGauge(painter, size, {layer}, style);
    painter.end();
    QRegion pixels;
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            if (image.pixelColor(x, y) == layer.tickCountColor)
                pixels += QRect(x, y, 1, 1);
        }
    }
    return pixels.boundingRect();
}

double distance(const QPointF &a, const QPointF &b)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

} // namespace

/// The numbers around the face: what they say, where they stand, and that they leave no trace.
class tst_Labels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void counts();
    void skipFirstLeavesTheOthersAlone();
    void disabledDrawsNone();
    void writesNumbersPlainly_data();
    void writesNumbersPlainly();
    void decimalsBeyondADoubleAreNotWritten();
    void addsUpFromTickToTick();
    void countsOnWhereALabelIsLeftOut();
    void standsUprightAtItsTick_data();
    void standsUprightAtItsTick();
    void isCentredOnItsAnchor_data();
    void isCentredOnItsAnchor();
    void turnsWithItsTick();
    void turnedLabelsLeaveTheTransform();
    void keepsThePensOfTheTicks();
    void isDrawnInItsFontAndColor_data();
    void isDrawnInItsFontAndColor();
    void growsWithTheSize();
    void outlinesStandWhereTheTextDoes();
    void noDivisionsGiveOneLabelWithoutAPlace();
};

void tst_Labels::counts()
{
    gaugeData layer = labelled();
    QCOMPARE(paintedTexts(layer), words("0 1 2 3 4"));
    layer.tickCountIncrement = 10.0;
    QCOMPARE(paintedTexts(layer), words("0 10 20 30 40"));
    layer.tickCountStart = 100.0;
    layer.tickCountIncrement = -25.0;
    QCOMPARE(paintedTexts(layer), words("100 75 50 25 0"));
    layer.angleLength = 360.0;
    QCOMPARE(paintedTexts(layer), words("100 75 50 25"));
}

void tst_Labels::skipFirstLeavesTheOthersAlone()
{
    gaugeData layer = labelled();
    layer.tickCountIncrement = 10.0;
    const QList<RecordedCall> all = paintedLabels(layer);
    layer.tickCountSkipFirst = true;
    QCOMPARE(paintedTexts(layer), words("10 20 30 40"));
    QCOMPARE(descriptions(paintedLabels(layer)), descriptions(all.sliced(1)));
}

void tst_Labels::disabledDrawsNone()
{
    gaugeData layer = labelled();
    layer.tickCountEnabled = false;
    QVERIFY(paintedTexts(layer).isEmpty());
}

void tst_Labels::writesNumbersPlainly_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("text");
    QTest::newRow("whole") << 7.0 << 0 << "7";
    QTest::newRow("zeros are kept") << 7.5 << 3 << "7.500";
    QTest::newRow("rounded") << 2.71828 << 2 << "2.72";
    QTest::newRow("no grouping") << 1234567.0 << 0 << "1234567";
    QTest::newRow("no exponent") << 1e15 << 1 << "1000000000000000.0";
    QTest::newRow("negative") << -0.25 << 2 << "-0.25";
    QTest::newRow("what a double holds") << 0.1 << 20 << "0.10000000000000000555";
    QTest::newRow("not a number") << notANumber << 2 << "nan";
    QTest::newRow("infinite") << infinity << 2 << "inf";
    // Qt takes a negative precision for its default of six.
    QTest::newRow("negative decimals") << 0.5 << -1 << "0.500000";
    QTest::newRow("least decimals") << 0.5 << std::numeric_limits<int>::min() << "0.500000";
}

void tst_Labels::writesNumbersPlainly()
{
    QFETCH(const double, value);
    QFETCH(const int, decimals);
    QFETCH(const QString, text);
    gaugeData layer = labelled();
    layer.tickCountStart = value;
    layer.tickCountDecimalPlaces = decimals;
    QCOMPARE(paintedTexts(layer).first(), text);
}

void tst_Labels::decimalsBeyondADoubleAreNotWritten()
{
    gaugeData layer = labelled();
    layer.divisionCount[0] = 1;
    layer.tickCountSkipFirst = true;
    layer.tickCountStart = 0.0;
    // The smallest double there is, 2 to the power -1074: its last decimal is a 5.
    layer.tickCountIncrement = 5e-324;
    layer.tickCountDecimalPlaces = 1074;
    const QString complete = paintedTexts(layer).first();
    QCOMPARE(complete.size(), 2 + 1074);
    QVERIFY(complete.endsWith(QLatin1String("625")));
    layer.tickCountDecimalPlaces = std::numeric_limits<int>::max();
    QCOMPARE(paintedTexts(layer).first(), complete);
}

void tst_Labels::addsUpFromTickToTick()
{
    gaugeData layer = labelled();
    layer.divisionCount[0] = 10;
    layer.tickCountIncrement = 0.1;
    layer.tickCountDecimalPlaces = 16;
    const QStringList texts = paintedTexts(layer);
    // 8 x 0.1 is 0.8 and 10 x 0.1 is 1, but tenths one after another fall short of them.
    QCOMPARE(texts.at(8), QStringLiteral("0.7999999999999999"));
    QCOMPARE(texts.at(10), QStringLiteral("0.9999999999999999"));
}

void tst_Labels::countsOnWhereALabelIsLeftOut()
{
    gaugeData layer = labelled();
    layer.divisionCount[0] = 10;
    layer.tickCountIncrement = 0.1;
    layer.tickCountDecimalPlaces = 16;
    const QStringList all = paintedTexts(layer);
    layer.tickCountSkipFirst = true;
    QCOMPARE(paintedTexts(layer), all.sliced(1));
}

void tst_Labels::standsUprightAtItsTick_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("radius");
    QTest::newRow("default") << 0.0 << 120.0 << 0.74;
    QTest::newRow("round the face") << -135.0 << 270.0 << 1.2;
    QTest::newRow("counter-clockwise") << 10.5 << -99.9 << 0.333;
    QTest::newRow("at the centre") << 0.0 << 120.0 << 0.0;
    QTest::newRow("on the other side") << 0.0 << 120.0 << -0.5;
}

void tst_Labels::standsUprightAtItsTick()
{
    QFETCH(const double, start);
    QFETCH(const double, length);
    QFETCH(const double, radius);
    gaugeData layer = labelled();
    layer.startAngle = start;
    layer.angleLength = length;
    layer.tickCountRadius = radius;

    const QList<RecordedCall> expected = bareCalls([&](QPainter &painter) {
        for (int i = 0; i <= 4; ++i) {
            const QPointF anchor = dialPoint(250.0 * radius, (90.0 - start) - (i / 4.0) * length);
            painter.setFont(layer.tickCountFont);
            painter.setPen(dialPen(Qt::magenta, 0.0, Qt::FlatCap));
            painter.drawText(QRectF(anchor.x() - 50.0, anchor.y() - 50.0, 100.0, 100.0), Qt::AlignCenter,
                             QString::number(i));
        }
    });
    QCOMPARE(descriptions(paintedLabels(layer)), descriptions(expected));
}

void tst_Labels::isCentredOnItsAnchor_data()
{
    QTest::addColumn<bool>("rotated");
    QTest::newRow("upright") << false;
    QTest::newRow("rotated") << true;
}

void tst_Labels::isCentredOnItsAnchor()
{
    QFETCH(const bool, rotated);
    gaugeData layer = labelled();
    layer.tickCountRotate = rotated;
    layer.tickCountIncrement = 12.5;
    layer.tickCountDecimalPlaces = 1;
    const QList<RecordedCall> labels = paintedLabels(layer);
    QCOMPARE(labels.size(), 5);
    for (int i = 0; i < 5; ++i) {
        // Text is laid out in 64ths of a unit, and its height in whole ones.
        const double off = distance(middle(labels.at(i)), dialPoint(185.0, 90.0 - 30.0 * i));
        QVERIFY2(off <= 1.0, qPrintable(QString::number(off)));
    }
}

void tst_Labels::turnsWithItsTick()
{
    gaugeData layer = labelled();
    layer.tickCountRotate = true;
    const QList<RecordedCall> expected = bareCalls([&](QPainter &painter) {
        for (int i = 0; i <= 4; ++i) {
            const double angle = 90.0 - (i / 4.0) * 120.0;
            const QPointF anchor = dialPoint(250.0 * 0.74, angle);
            painter.setFont(layer.tickCountFont);
            painter.setPen(dialPen(Qt::magenta, 0.0, Qt::FlatCap));
            painter.translate(anchor);
            painter.rotate(90.0 - angle);
            painter.drawText(QRectF(-50.0, -50.0, 100.0, 100.0), Qt::AlignCenter, QString::number(i));
            painter.rotate(-(90.0 - angle));
            painter.translate(-anchor);
        }
    });
    const QList<RecordedCall> labels = paintedLabels(layer);
    QCOMPARE(descriptions(labels), descriptions(expected));
    // At 3 o'clock the top of the text faces right.
    const QPointF upwards =
        labels.at(3).transform.map(QPointF(0.0, -1.0)) - labels.at(3).transform.map(QPointF(0.0, 0.0));
    QVERIFY(distance(upwards, {1.0, 0.0}) < 1e-12);
}

void tst_Labels::turnedLabelsLeaveTheTransform()
{
    gaugeData layer = labelled();
    layer.startAngle = -135.0;
    layer.angleLength = 270.0;
    layer.divisionCount = {1000, 2, 2};
    layer.tickCountRotate = true;
    RecordingDevice device;
    QPainter painter(&device);
    paintGauge(painter, 512, {layer});
    const QTransform left = painter.worldTransform();
    painter.end();
    // A thousand turns there and back are off by roundings only.
    for (const double difference : {left.m11() - 1.0, left.m12(), left.m21(), left.m22() - 1.0})
        QVERIFY(std::abs(difference) < 1e-12);
    for (const double difference : {left.dx(), left.dy()})
        QVERIFY(std::abs(difference) < 1e-9);
}

void tst_Labels::keepsThePensOfTheTicks()
{
    gaugeData layer = labelled();
    layer.divisionCount = {4, 2, 2};
    gaugeData bare = layer;
    bare.tickCountEnabled = false;
    QCOMPARE(descriptions(paintedLines(layer)), descriptions(paintedLines(bare)));
}

void tst_Labels::isDrawnInItsFontAndColor_data()
{
    QTest::addColumn<QFont>("font");
    QTest::addColumn<QColor>("color");
    QTest::addColumn<bool>("roundedTicks");
    QFont italic(QStringLiteral("Serif"), 30);
    italic.setItalic(true);
    QFont pixels(QStringLiteral("Monospace"));
    pixels.setPixelSize(17);
    QTest::newRow("bold") << QFont(QStringLiteral("Sans Serif"), 12, QFont::Bold) << QColor(Qt::cyan)
                          << false;
    QTest::newRow("italic") << italic << QColor(1, 2, 3, 128) << true;
    QTest::newRow("pixel size") << pixels << QColor(Qt::black) << false;
    QTest::newRow("default") << QFont(QStringLiteral("Sans Serif"), 10) << QColor(Qt::white) << true;
}

void tst_Labels::isDrawnInItsFontAndColor()
{
    QFETCH(const QFont, font);
    QFETCH(const QColor, color);
    QFETCH(const bool, roundedTicks);
    gaugeData layer = labelled();
    layer.tickCountFont = font;
    layer.tickCountColor = color;
    layer.roundedTickCaps = roundedTicks;
    const QList<RecordedCall> labels = paintedLabels(layer);
    QCOMPARE(labels.size(), 5);
    for (const RecordedCall &label : labels) {
        QCOMPARE(label.font, font);
        QCOMPARE(penDescription(label.pen),
                 penDescription(dialPen(color, 0.0, roundedTicks ? Qt::RoundCap : Qt::FlatCap)));
        QCOMPARE(label.brush, QBrush(Qt::white, Qt::NoBrush));
    }
}

void tst_Labels::growsWithTheSize()
{
    const QList<RecordedCall> single = paintedLabels(labelled(), 512);
    const QList<RecordedCall> doubled = paintedLabels(labelled(), 1024);
    QCOMPARE(doubled.size(), single.size());
    for (qsizetype i = 0; i < single.size(); ++i) {
        QCOMPARE(doubled.at(i).font, single.at(i).font);
        QVERIFY(doubled.at(i).textWidth == single.at(i).textWidth);
        QVERIFY(doubled.at(i).transform.m11() == 2.0);
        QVERIFY(distance(middle(doubled.at(i)), middle(single.at(i)) * 2.0) < 1e-9);
    }
}

void tst_Labels::outlinesStandWhereTheTextDoes()
{
    gaugeData layer = labelled();
    layer.divisionCount[0] = 1;
    layer.tickCountSkipFirst = true; // leaves one, whose place is then its own alone
    layer.tickCountIncrement = 1234.0;
    layer.tickCountFont.setPointSize(24);
    const QRect text = covered(layer, 1024, {});
    const QRect outlines = covered(layer, 1024, {.textAsPaths = true});
    QVERIFY(text.width() > 100);
    // Hinting moves the edges of the text by a pixel or two.
    const QMargins most(4, 4, 4, 4);
    QVERIFY(text.marginsAdded(most).contains(outlines));
    QVERIFY(outlines.marginsAdded(most).contains(text));
}

void tst_Labels::noDivisionsGiveOneLabelWithoutAPlace()
{
    gaugeData layer = labelled();
    layer.divisionCount[0] = 0;
    layer.tickCountStart = 42.0;
    const QList<RecordedCall> labels = paintedLabels(layer);
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.first().text, QStringLiteral("42"));
    // Qt makes some coordinate of what is no number, far off the canvas.
    QVERIFY(!QRectF(-1e6, -1e6, 2e6, 2e6).contains(labels.first().position));
}

ADD_TEST_CLASS(tst_Labels)
#include "tst_labels.moc"
