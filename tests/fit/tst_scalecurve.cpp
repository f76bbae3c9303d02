#include "fit/scalecurve.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>

namespace {

using Kind = ScaleCurve::Kind;

const QList<QPointF> unequalSteps{{-2.0, -45.0}, {0.0, -40.0}, {0.5, 10.0}, {7.0, 12.0}, {8.0, 45.0}};

} // namespace

/// The curve through measured points.
class tst_ScaleCurve : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void goesThroughThePoints_data() { kinds(); }
    void goesThroughThePoints();
    void isMonotone_data() { kinds(); }
    void isMonotone();
    void fallsAsItRises();
    void flatPartsStayFlat();
    void twoPointsGiveALine_data() { kinds(); }
    void twoPointsGiveALine();
    void threePointsGiveACurve();
    void pointsCanBeAdjacentNumbers_data();
    void pointsCanBeAdjacentNumbers();
    void slopesOfTheSmoothCurve();
    void straightLines();
    void endsAtThePoints();
    void extrapolatesAlongTheLastSlope_data() { kinds(); }
    void extrapolatesAlongTheLastSlope();

private:
    static void kinds()
    {
        QTest::addColumn<Kind>("kind");
        QTest::newRow("smooth") << Kind::Smooth;
        QTest::newRow("straight") << Kind::Straight;
    }
};

void tst_ScaleCurve::goesThroughThePoints()
{
    QFETCH(const Kind, kind);
    const ScaleCurve curve(unequalSteps, kind);
    QCOMPARE(curve.minValue(), -2.0);
    QCOMPARE(curve.maxValue(), 8.0);
    for (const QPointF &point : unequalSteps)
        QCOMPARE(curve.angle(point.x()), point.y());
}

void tst_ScaleCurve::isMonotone()
{
    QFETCH(const Kind, kind);
    const ScaleCurve curve(unequalSteps, kind);
    double last = curve.angle(-2.0);
    for (int i = 1; i <= 10'000; ++i) {
        const double angle = curve.angle(-2.0 + i / 1000.0);
        QVERIFY2(angle >= last, qPrintable(QString::number(-2.0 + i / 1000.0)));
        last = angle;
    }
}

void tst_ScaleCurve::fallsAsItRises()
{
    QList<QPointF> falling;
    for (const QPointF &point : unequalSteps)
        falling.append({point.x(), -point.y()});
    const ScaleCurve rising(unequalSteps);
    const ScaleCurve curve(falling);
    for (const double value : {-1.0, 0.2, 3.0, 7.7})
        QCOMPARE(curve.angle(value), -rising.angle(value));
}

void tst_ScaleCurve::flatPartsStayFlat()
{
    const ScaleCurve curve({{0.0, 0.0}, {1.0, 20.0}, {2.0, 20.0}, {3.0, 50.0}});
    for (const double value : {1.0, 1.25, 1.5, 1.9})
        QCOMPARE(curve.angle(value), 20.0);
}

void tst_ScaleCurve::twoPointsGiveALine()
{
    QFETCH(const Kind, kind);
    const ScaleCurve curve({{1.0, 10.0}, {3.0, 50.0}}, kind);
    for (const double value : {1.0, 1.5, 2.5, 3.0})
        QCOMPARE(curve.angle(value), 20.0 * value - 10.0);
}

void tst_ScaleCurve::threePointsGiveACurve()
{
    const ScaleCurve curve({{0.0, 0.0}, {1.0, 10.0}, {2.0, 50.0}});
    // The slopes are 10, 16 (the harmonic mean of 10 and 40) and 40.
    QCOMPARE(curve.angle(0.5), 5.0 + (10.0 - 16.0) / 8.0);
    QCOMPARE(curve.angle(1.5), 30.0 + (16.0 - 40.0) / 8.0);
}

void tst_ScaleCurve::pointsCanBeAdjacentNumbers_data()
{
    QTest::addColumn<QList<QPointF>>("points");
    // Numbers below a power of two are closer together than those above.
    const QList<QPointF> rising{{0.0, 0.0}, {std::nextafter(2.0, 0.0), 10.0}, {2.0, 20.0}};
    QList<QPointF> falling;
    for (const QPointF &point : rising)
        falling.prepend({-point.x(), point.y()});
    QTest::newRow("at the end") << rising;
    QTest::newRow("at the start") << falling;
    QTest::newRow("around 0") << QList<QPointF>{
        {0.0, 0.0}, {1e-240, 10.0}, {2e-240, 36'000.0}, {1e15, 36'001.0}};
}

void tst_ScaleCurve::pointsCanBeAdjacentNumbers()
{
    QFETCH(const QList<QPointF>, points);
    const ScaleCurve curve(points);
    for (const QPointF &point : points)
        QCOMPARE(curve.angle(point.x()), point.y());
}

void tst_ScaleCurve::slopesOfTheSmoothCurve()
{
    const ScaleCurve curve(unequalSteps);
    const auto slope = [&curve](double value) {
        constexpr double step = 1e-6;
        return (curve.angle(value + step) - curve.angle(value - step)) / (2.0 * step);
    };
    // The weighted harmonic mean of 2.5 and 100, the slopes on either side, which are 2 and 0.5 wide.
    constexpr double mean = 7.5 / (3.0 / 2.5 + 4.5 / 100.0);
    QVERIFY(std::abs(slope(0.0) - mean) < 1e-3);
}

void tst_ScaleCurve::straightLines()
{
    const ScaleCurve curve(unequalSteps, Kind::Straight);
    QCOMPARE(curve.angle(-1.0), -42.5);
    QCOMPARE(curve.angle(0.25), -15.0);
    QCOMPARE(curve.angle(7.5), 28.5);
}

void tst_ScaleCurve::endsAtThePoints()
{
    const ScaleCurve curve(unequalSteps);
    QVERIFY(std::isnan(curve.angle(-2.001)));
    QVERIFY(std::isnan(curve.angle(8.001)));
    QVERIFY(std::isnan(curve.angle(qQNaN())));
    QCOMPARE(curve.angle(8.000000000001), 45.0);
    QCOMPARE(curve.angle(-2.000000000001), -45.0);
}

void tst_ScaleCurve::extrapolatesAlongTheLastSlope()
{
    QFETCH(const Kind, kind);
    const ScaleCurve curve(unequalSteps, kind, true);
    QCOMPARE(curve.angle(-4.0), -50.0);
    QCOMPARE(curve.angle(10.0), 111.0);
}

ADD_TEST_CLASS(tst_ScaleCurve)
#include "tst_scalecurve.moc"
