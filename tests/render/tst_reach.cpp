#include "dial.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QImage>
#include <QTest>

#include <functional>
#include <limits>

namespace {

using Kind = RecordedCall::Kind;
using Setter = std::function<void(gaugeData &, double)>;

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double mostDouble = std::numeric_limits<double>::max();

} // namespace

/// Lines and arcs that reach far out of the picture.
class tst_Reach : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void farOutLooksLikeJustOutOfSight_data();
    void farOutLooksLikeJustOutOfSight();
    void farOutIsExactWhereItCostsNothing();
    void wideArcKeepsItsInnerEdge();
    void farOutDoesNotStall();
};

void tst_Reach::farOutLooksLikeJustOutOfSight_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<double>("far");
    QTest::addColumn<double>("near");
    const Setter outer = [](gaugeData &g, double x) { g.divisionOuterRadius = {x, x, x}; };
    const Setter across = [](gaugeData &g, double x) {
        g.divisionOuterRadius = {x, x, x};
        g.divisionInnerRadius = {-x, -x, -x};
    };
    const Setter arcs = [](gaugeData &g, double x) { g.arcRadius = {x, x, x, x}; };
    const Setter lineWidth = [](gaugeData &g, double x) { g.divisionLineWidth = {x, x, x}; };
    const Setter arcWidth = [](gaugeData &g, double x) { g.arcWidth = {x, x, x, x}; };
    for (const double far : {1e3, 33000.0, 1e9, mostDouble, infinity}) {
        QTest::addRow("outer radius %g", far) << outer << far << 9.0;
        QTest::addRow("negative outer radius %g", far) << outer << -far << -9.0;
        QTest::addRow("across %g", far) << across << far << 9.0;
        QTest::addRow("arcs %g", far) << arcs << far << 9.0;
        QTest::addRow("negative arcs %g", far) << arcs << -far << -9.0;
        QTest::addRow("line width %g", far * 250.0) << lineWidth << far * 250.0 << 3000.0;
        QTest::addRow("arc width %g", far * 250.0) << arcWidth << far * 250.0 << 3000.0;
    }
}

void tst_Reach::farOutLooksLikeJustOutOfSight()
{
    QFETCH(const Setter, set);
    QFETCH(const double, far);
    QFETCH(const double, near);
    gaugeData farLayer = busyLayer(true);
    // Square to the picture, so that no rounding of a slope shows.
    farLayer.angleLength = 270.0;
    farLayer.divisionCount = {3, 1, 1};
    farLayer.arcAngleLength = {90.0, 360.0, -90.0, 180.0};
    gaugeData nearLayer = farLayer;
    set(farLayer, far);
    set(nearLayer, near);
    QCOMPARE(picture({farLayer}), picture({nearLayer}));
}

void tst_Reach::farOutIsExactWhereItCostsNothing()
{
    gaugeData layer = ticksOnly();
    layer.angleLength = 360.0;
    layer.divisionCount[0] = 1;
    layer.divisionOuterRadius[0] = 1e6;
    layer.divisionInnerRadius[0] = -infinity;
    layer.divisionLineWidth[0] = 1e9;
    layer.arcAngleLength[0] = 360.0;
    layer.arcRadius[0] = 4e7;
    layer.arcWidth[0] = 5e8;
    const QList<RecordedCall> calls = paintedCalls({layer});
    const RecordedCall line = ofKind(Kind::Line, calls).constFirst();
    QVERIFY(line.line.y1() == 256.0 - 2.5e8);
    QVERIFY(line.line.y2() == infinity);
    QVERIFY(line.pen.widthF() == 1e9);
    const RecordedCall arc = ofKind(Kind::Path, calls).constFirst();
    QVERIFY(arc.path.boundingRect().width() > 1.9e10);
    QVERIFY(arc.pen.widthF() == 5e8);
}

void tst_Reach::wideArcKeepsItsInnerEdge()
{
    // A full ring around 20 face radii, so wide that only 100 units around the centre stay free.
    constexpr double free = 100.0;
    gaugeData layer;
    layer.divisionCount = {-1, 1, 1};
    layer.arcAngleLength = {360.0, 0.0, 0.0, 0.0};
    layer.arcRadius[0] = 20.0;
    layer.arcWidth[0] = 2.0 * (20.0 * 250.0 - free);

    const QImage image = picture({layer}, 512);
    QCOMPARE(image.pixelColor(256 + 90, 256).alpha(), 0);
    QCOMPARE(image.pixelColor(256, 256 - 90).alpha(), 0);
    QCOMPARE(image.pixelColor(256 + 110, 256), QColor(Qt::green));
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::green));
}

void tst_Reach::farOutDoesNotStall()
{
    gaugeData layer = busyLayer(true);
    layer.divisionCount = {20, 2, 1};
    layer.divisionInnerRadius = {-900.0, -900.0, -900.0};
    layer.arcRadius = {900.0, 900.0, 900.0, 900.0};
    // Line by line out to its end, this picture would take the raster engine far longer than a test may run.
    QVERIFY(!picture({layer}, 4096).isNull());
}

ADD_TEST_CLASS(tst_Reach)
#include "tst_reach.moc"
