#include "render/gaugeparts.h"
#include "render/imageexport.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// Face, needles and cover of a gauge.
class tst_GaugeParts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void layersOfParts_data();
    void layersOfParts();
    void failures_data();
    void failures();
    void needleIsAtItsFirstTick_data();
    void needleIsAtItsFirstTick();
    void anglesBelongToTheirNeedles();
    void rotationTurnsAboutTheCentre();
    void centreDotCanBeLeftOut();
};

namespace {

QList<gaugeLayer> stack(const QStringList &names)
{
    QList<gaugeLayer> layers;
    for (const QString &name : names)
        layers.append({name, {}});
    return layers;
}

QList<NeedleChoice> choices(const QStringList &values)
{
    QList<NeedleChoice> needles;
    for (const QString &value : values)
        needles.append({value, {}});
    return needles;
}

QList<gaugeLayer> clockLayers()
{
    return stack({u"Face"_s, u"Hour"_s, u"Date"_s, u"Minute"_s, u"Minute tip"_s, u"Hub"_s});
}

/// A hand from the centre outwards at @a angle, as wide as it is easy to see.
gaugeData hand(double angle, double length, QColor color)
{
    gaugeData data;
    data.startAngle = angle;
    data.angleLength = 360.0;
    data.divisionCount = {1, 1, 1};
    data.divisionInnerRadius[0] = 0.0;
    data.divisionOuterRadius[0] = length;
    data.divisionLineWidth[0] = 20.0;
    data.divisionColor[0] = color;
    data.arcAngleLength = {};
    data.tickCountRadius = 0.5;
    data.tickCountRotate = true;
    return data;
}

/// The number of pixels whose colours clearly differ.
int differentPixels(const QImage &a, const QImage &b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (qAbs(a.pixelColor(x, y).alpha() - b.pixelColor(x, y).alpha()) > 64)
                ++count;
        }
    }
    return count;
}

} // namespace

void tst_GaugeParts::layersOfParts_data()
{
    QTest::addColumn<QStringList>("needles");
    QTest::addColumn<QStringList>("parts");
    QTest::newRow("one needle") << QStringList{u"Minute*"_s}
                                << QStringList{u"face: Face,Hour,Date"_s, u"needle: Minute,Minute tip"_s,
                                               u"cover: Hub"_s};
    QTest::newRow("by number, upside down")
        << QStringList{u"5,Minute"_s}
        << QStringList{u"face: Face,Hour,Date"_s, u"needle: Minute,Minute tip"_s, u"cover: Hub"_s};
    QTest::newRow("two needles") << QStringList{u"Minute*"_s, u"Hour"_s}
                                 << QStringList{u"face: Face"_s, u"needle: Hour"_s, u"face-2: Date"_s,
                                                u"needle-2: Minute,Minute tip"_s, u"cover: Hub"_s};
    QTest::newRow("nothing else") << QStringList{u"*"_s}
                                  << QStringList{u"face: "_s,
                                                 u"needle: Face,Hour,Date,Minute,Minute tip,Hub"_s,
                                                 u"cover: "_s};
    QTest::newRow("no needle") << QStringList()
                               << QStringList{u"cover: Face,Hour,Date,Minute,Minute tip,Hub"_s};
}

void tst_GaugeParts::layersOfParts()
{
    QFETCH(const QStringList, needles);
    QFETCH(const QStringList, parts);
    const GaugeParts result = splitGauge(clockLayers(), choices(needles));
    QCOMPARE(result.failure, QString());
    QStringList found;
    for (const GaugePart &part : result.parts) {
        QStringList names;
        for (const gaugeLayer &layer : part.layers)
            names.append(layer.name);
        found.append(part.name + u": "_s + names.join(u','));
        QCOMPARE(part.isNeedle, part.name.startsWith("needle"_L1));
    }
    QCOMPARE(found, parts);
}

void tst_GaugeParts::failures_data()
{
    QTest::addColumn<QStringList>("needles");
    QTest::addColumn<QString>("named");
    QTest::newRow("unknown") << QStringList{u"Needle"_s} << u"no layer \"Needle\""_s;
    QTest::newRow("no layer begins so") << QStringList{u"Needle*"_s} << u"no layer \"Needle*\""_s;
    QTest::newRow("not consecutive") << QStringList{u"Hour,Minute"_s} << u"\"Date\" lies between"_s;
    QTest::newRow("in two needles") << QStringList{u"Minute*"_s, u"Minute tip"_s} << u"\"Minute tip\""_s;
    QTest::newRow("the same needle twice") << QStringList{u"Hour"_s, u"2"_s} << u"\"Hour\""_s;
    QTest::newRow("empty") << QStringList{QString()} << u"no layer \"\""_s;
}

void tst_GaugeParts::failures()
{
    QFETCH(const QStringList, needles);
    QFETCH(const QString, named);
    const GaugeParts result = splitGauge(clockLayers(), choices(needles));
    QVERIFY2(result.failure.contains(named), qPrintable(result.failure));
    QVERIFY(result.parts.isEmpty());
}

void tst_GaugeParts::needleIsAtItsFirstTick_data()
{
    QTest::addColumn<gaugeData>("data");
    QTest::addColumn<double>("angle");
    QTest::newRow("a hand") << hand(155.62, 0.8, Qt::red) << 155.62;
    gaugeData data = hand(30.0, 0.8, Qt::red);
    data.bias = 0.0; // all ticks are at the end of the sweep
    data.angleLength = 90.0;
    QTest::newRow("clamped bias") << data << 120.0;
    data = hand(30.0, 0.8, Qt::red);
    data.divisionCount[0] = 0;
    QTest::newRow("arcs alone") << data << 0.0;
    QTest::newRow("infinite") << hand(infinity, 0.8, Qt::red) << 0.0;
    QTest::newRow("not a number") << hand(infinity - infinity, 0.8, Qt::red) << 0.0;
}

void tst_GaugeParts::needleIsAtItsFirstTick()
{
    QFETCH(const gaugeData, data);
    QFETCH(const double, angle);
    const GaugeParts result = splitGauge({{u"Needle"_s, data}, {u"Tip"_s, {}}}, choices({u"1,2"_s}));
    QVERIFY(qAbs(result.parts.at(1).needleAngle - angle) < 1e-9);
}

void tst_GaugeParts::anglesBelongToTheirNeedles()
{
    const GaugeParts result = splitGauge(clockLayers(), {{u"Minute*"_s, 40.0}, {u"Hour"_s, 20.0}});
    QCOMPARE(result.parts.at(1).needleAngle, 20.0);
    QCOMPARE(result.parts.at(3).needleAngle, 40.0);
}

void tst_GaugeParts::rotationTurnsAboutTheCentre()
{
    const PictureStyle upright{.rotation = -57.6};
    const QImage turned = gaugeImage(400, {hand(57.6, 0.8, Qt::red)}, upright);
    QVERIFY(differentPixels(turned, gaugeImage(400, {hand(0.0, 0.8, Qt::red)})) < 10);
}

void tst_GaugeParts::centreDotCanBeLeftOut()
{
    const QImage dot = gaugeImage(400, {});
    QCOMPARE(dot.pixelColor(200, 200), QColor(Qt::white));
    const QImage nothing = gaugeImage(400, {}, {.centreDot = false});
    QCOMPARE(nothing.pixelColor(200, 200).alpha(), 0);
}

ADD_TEST_CLASS(tst_GaugeParts)
#include "tst_gaugeparts.moc"
