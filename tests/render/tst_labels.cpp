#include "dial.h"
#include "render/gaugepainter.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QImage>
#include <QPainter>
#include <QRegion>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

/// The texts and positions of labels. tst_GaugePainter tests their fonts and colours.
class tst_Labels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void countsTicks();
    void numberFormat();
    void decimalsAreLimited();
    void isCentredOnItsAnchor();
    void pathsAreWhereTheTextIs();
    void noDivisions();
};

namespace {

using Kind = RecordedCall::Kind;

/// Labels on five ticks from 12 to 4 o'clock.
gaugeData layerWithLabels()
{
    gaugeData layer = ticksOnly();
    layer.tickCountEnabled = true;
    layer.tickCountColor = Qt::magenta;
    layer.tickCountFont = QFont(u"Sans Serif"_s, 14);
    return layer;
}

QStringList words(const QString &text)
{
    return text.split(u' ');
}

/// The bounds of all pixels of the labels' colour.
QRect coveredPixels(const gaugeData &layer, int size, const PaintStyle &style)
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

} // namespace

void tst_Labels::countsTicks()
{
    gaugeData layer = layerWithLabels();
    QCOMPARE(paintedTexts(layer), words(u"0 1 2 3 4"_s));
    layer.tickCountStart = 100.0;
    layer.tickCountIncrement = -25.0;
    QCOMPARE(paintedTexts(layer), words(u"100 75 50 25 0"_s));
    layer.tickCountSkipFirst = true;
    QCOMPARE(paintedTexts(layer), words(u"75 50 25 0"_s));
    layer.angleLength = 360.0;
    QCOMPARE(paintedTexts(layer), words(u"75 50 25"_s));
    layer.tickCountEnabled = false;
    QVERIFY(paintedTexts(layer).isEmpty());
}

void tst_Labels::numberFormat()
{
    struct Case
    {
        double value;
        int decimals;
        QLatin1StringView text;
    };
    // Qt uses six decimals if the precision is negative.
    for (const auto &[value, decimals, text] :
         {Case{7.5, 3, "7.500"_L1}, Case{2.71828, 2, "2.72"_L1}, Case{1e15, 1, "1000000000000000.0"_L1},
          Case{0.1, 20, "0.10000000000000000555"_L1}, Case{notANumber, 2, "nan"_L1},
          Case{-infinity, 2, "-inf"_L1}, Case{0.5, minInt, "0.500000"_L1}}) {
        gaugeData layer = layerWithLabels();
        layer.tickCountStart = value;
        layer.tickCountDecimalPlaces = decimals;
        QCOMPARE(paintedTexts(layer).first(), text);
    }
}

void tst_Labels::decimalsAreLimited()
{
    gaugeData layer = layerWithLabels();
    layer.tickCountStart = smallestDouble; // 2^-1074: the last decimal is a 5
    layer.tickCountDecimalPlaces = 1074;
    const QString complete = paintedTexts(layer).first();
    QCOMPARE(complete.size(), 2 + 1074);
    QVERIFY(complete.endsWith("625"_L1));
    layer.tickCountDecimalPlaces = maxInt;
    QCOMPARE(paintedTexts(layer).first(), complete);
}

void tst_Labels::isCentredOnItsAnchor()
{
    for (const bool rotated : {false, true}) {
        gaugeData layer = layerWithLabels();
        layer.tickCountRotate = rotated;
        const QList<RecordedCall> labels = paintedCalls(Kind::Text, layer);
        QCOMPARE(labels.size(), 5);
        for (int i = 0; i < 5; ++i) {
            const QPointF centre = labels.at(i).transform.map(labels.at(i).rectangle.center());
            // Qt rounds the text height to whole units.
            QVERIFY(QLineF(centre, dialPoint(185.0, 90.0 - 30.0 * i)).length() <= 1.0);
        }
    }
}

void tst_Labels::pathsAreWhereTheTextIs()
{
    gaugeData layer = layerWithLabels();
    layer.divisionCount[0] = 1;
    layer.tickCountSkipFirst = true;
    layer.tickCountIncrement = 1234.0;
    layer.tickCountFont.setPointSize(24);
    const QRect text = coveredPixels(layer, 1024, {});
    const QRect paths = coveredPixels(layer, 1024, {.textAsPaths = true});
    QVERIFY(text.width() > 100);
    // Hinting moves the edges of the text by one or two pixels.
    const QMargins tolerance(4, 4, 4, 4);
    QVERIFY(text.marginsAdded(tolerance).contains(paths));
    QVERIFY(paths.marginsAdded(tolerance).contains(text));
}

void tst_Labels::noDivisions()
{
    gaugeData layer = layerWithLabels();
    layer.divisionCount[0] = 0;
    layer.tickCountStart = 42.0;
    const QList<RecordedCall> labels = paintedCalls(Kind::Text, layer);
    QCOMPARE(labels.size(), 1);
    QCOMPARE(labels.first().text, u"42"_s);
    // The position is NaN. Qt converts it to a point far away.
    QVERIFY(!QRectF(-1e6, -1e6, 2e6, 2e6).contains(labels.first().rectangle.topLeft()));
}

ADD_TEST_CLASS(tst_Labels)
#include "tst_labels.moc"
