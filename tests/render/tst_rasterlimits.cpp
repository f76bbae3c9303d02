#include "dial.h"
#include "render/rasterlimits.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QPainter>
#include <QTest>

#include <functional>

/// Lines and arcs that are partly far outside the canvas.
class tst_RasterLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void imageIsTheSame_data();
    void imageIsTheSame();
    void otherEnginesAreNotLimited();
    void smallValuesAreNotChanged();
    void arcKeepsItsInnerEdge();
    void hugeRadiiAreFast();
};

namespace {

using Setter = std::function<void(gaugeData &, double)>;

} // namespace

void tst_RasterLimits::imageIsTheSame_data()
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
    for (const double far : {1e3, 1e9, infinity}) {
        QTest::addRow("outer radius %g", far) << outer << far << 9.0;
        QTest::addRow("negative outer radius %g", far) << outer << -far << -9.0;
        QTest::addRow("across the canvas %g", far) << across << far << 9.0;
        QTest::addRow("arcs %g", far) << arcs << far << 9.0;
        QTest::addRow("negative arcs %g", far) << arcs << -far << -9.0;
        QTest::addRow("line width %g", far * 250.0) << lineWidth << far * 250.0 << 3000.0;
        QTest::addRow("arc width %g", far * 250.0) << arcWidth << far * 250.0 << 3000.0;
    }
}

void tst_RasterLimits::imageIsTheSame()
{
    QFETCH(const Setter, set);
    QFETCH(const double, far);
    QFETCH(const double, near);
    gaugeData farLayer = busyLayer(true);
    // Only horizontal and vertical lines, so that both are rounded alike.
    farLayer.angleLength = 270.0;
    farLayer.divisionCount = {3, 1, 1};
    farLayer.arcAngleLength = {90.0, 360.0, -90.0, 180.0};
    gaugeData nearLayer = farLayer;
    set(farLayer, far);
    set(nearLayer, near);
    QCOMPARE(picture({farLayer}), picture({nearLayer}));
}

void tst_RasterLimits::otherEnginesAreNotLimited()
{
    gaugeData layer = ticksOnly();
    layer.divisionOuterRadius[0] = 1e6;
    layer.divisionLineWidth[0] = 1e9;
    layer.arcAngleLength[0] = 360.0;
    layer.arcRadius[0] = 4e7;
    layer.arcWidth[0] = 5e8;
    QCOMPARE(descriptions(paintedCalls({layer})), descriptions(referenceCalls({layer})));
}

void tst_RasterLimits::smallValuesAreNotChanged()
{
    QImage image(8, 8, QImage::Format_ARGB32);
    QPainter painter(&image);
    const RasterLimits limits(painter);
    QCOMPARE(limits.radius(-2500.0), -2500.0);
    QCOMPARE(limits.width(4000.0), 4000.0);
    QCOMPARE(limits.arc(-2500.0, 4000.0).radius, -2500.0);
    QCOMPARE(limits.arc(-2500.0, 4000.0).width, 4000.0);
}

void tst_RasterLimits::arcKeepsItsInnerEdge()
{
    // The inner edge of this ring is 100 units from the centre.
    gaugeData layer;
    layer.divisionCount = {-1, 1, 1};
    layer.arcAngleLength = {360.0, 0.0, 0.0, 0.0};
    layer.arcRadius[0] = 20.0;
    layer.arcWidth[0] = 2.0 * (20.0 * 250.0 - 100.0);

    const QImage image = picture({layer});
    QCOMPARE(image.pixelColor(256 + 90, 256).alpha(), 0);
    QCOMPARE(image.pixelColor(256, 256 - 90).alpha(), 0);
    QCOMPARE(image.pixelColor(256 + 110, 256), QColor(Qt::green));
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::green));
}

void tst_RasterLimits::hugeRadiiAreFast()
{
    gaugeData layer = busyLayer(true);
    layer.divisionCount = {20, 2, 1};
    layer.divisionInnerRadius = {-900.0, -900.0, -900.0};
    layer.arcRadius = {900.0, 900.0, 900.0, 900.0};
    // Without limits this takes longer than the time limit of the test.
    QVERIFY(!picture({layer}, 2048).isNull());
}

ADD_TEST_CLASS(tst_RasterLimits)
#include "tst_rasterlimits.moc"
