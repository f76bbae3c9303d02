#include "model/gaugedata.h"
#include "render/sweep.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr int leastInt = std::numeric_limits<int>::min();
constexpr int mostInt = std::numeric_limits<int>::max();

} // namespace

/// How many ticks a sweep has, and where they lie.
class tst_Sweep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void countsPrimaryTicks_data();
    void countsPrimaryTicks();
    void countsNoTicksInGapsThatAreNotThere_data();
    void countsNoTicksInGapsThatAreNotThere();
    void dividesTheSweep_data();
    void dividesTheSweep();
    void noDivisionsGiveNoFraction();
    void placesATick_data();
    void placesATick();
};

void tst_Sweep::countsPrimaryTicks_data()
{
    QTest::addColumn<double>("length");
    QTest::addColumn<int>("divisions");
    QTest::addColumn<qint64>("ticks");
    QTest::newRow("part of a circle") << 120.0 << 4 << qint64(5);
    QTest::newRow("just no full circle") << std::nextafter(360.0, 0.0) << 4 << qint64(5);
    QTest::newRow("a full circle does not repeat its first tick") << 360.0 << 4 << qint64(4);
    QTest::newRow("more than a circle") << 720.0 << 4 << qint64(4);
    QTest::newRow("without end") << infinity << 4 << qint64(4);
    QTest::newRow("counter-clockwise") << -359.0 << 4 << qint64(5);
    QTest::newRow("counter-clockwise full circle") << -360.0 << 4 << qint64(4);
    QTest::newRow("no length") << 0.0 << 4 << qint64(5);
    QTest::newRow("length not a number") << notANumber << 4 << qint64(5);
    QTest::newRow("no divisions") << 120.0 << 0 << qint64(1);
    QTest::newRow("no divisions, full circle") << 360.0 << 0 << qint64(0);
    QTest::newRow("negative") << 120.0 << -1 << qint64(0);
    QTest::newRow("least int") << 120.0 << leastInt << qint64(leastInt) + 1;
    QTest::newRow("most int") << 120.0 << mostInt << qint64(mostInt) + 1;
    QTest::newRow("most int, full circle") << 360.0 << mostInt << qint64(mostInt);
}

void tst_Sweep::countsPrimaryTicks()
{
    QFETCH(const double, length);
    QFETCH(const int, divisions);
    QFETCH(const qint64, ticks);
    gaugeData layer;
    layer.angleLength = length;
    layer.divisionCount[0] = divisions;
    QCOMPARE(primaryTickCount(layer), ticks);
}

void tst_Sweep::countsNoTicksInGapsThatAreNotThere_data()
{
    QTest::addColumn<int>("divisions");
    QTest::addColumn<quint64>("ticks");
    QTest::newRow("no divisions") << 0 << quint64(1); // the one that closes the sweep
    QTest::newRow("negative") << -1 << quint64(0);
    QTest::newRow("least int") << leastInt << quint64(0);
}

void tst_Sweep::countsNoTicksInGapsThatAreNotThere()
{
    QFETCH(const int, divisions);
    QFETCH(const quint64, ticks);
    gaugeData layer;
    layer.divisionCount = {divisions, 5, 4};
    QCOMPARE(totalTickCount(layer), ticks);
}

void tst_Sweep::dividesTheSweep_data()
{
    QTest::addColumn<double>("position");
    QTest::addColumn<int>("divisions");
    QTest::addColumn<double>("fraction");
    QTest::newRow("start") << 0.0 << 4 << 0.0;
    QTest::newRow("end") << 4.0 << 4 << 1.0;
    QTest::newRow("between") << 2.5 << 4 << 0.625;
    QTest::newRow("thirds") << 1.0 << 3 << 1.0 / 3.0;
    QTest::newRow("most int") << double(mostInt) << mostInt << 1.0;
}

void tst_Sweep::dividesTheSweep()
{
    QFETCH(const double, position);
    QFETCH(const int, divisions);
    QFETCH(const double, fraction);
    QVERIFY(divisionFraction(position, divisions) == fraction);
}

void tst_Sweep::noDivisionsGiveNoFraction()
{
    QVERIFY(std::isnan(divisionFraction(0.0, 0)));
}

void tst_Sweep::placesATick_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("length");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<double>("angle");
    QTest::newRow("12 o'clock") << 0.0 << 90.0 << 0.0 << 90.0;
    QTest::newRow("3 o'clock") << 0.0 << 90.0 << 1.0 << 0.0;
    QTest::newRow("9 o'clock") << -90.0 << 180.0 << 0.0 << 180.0;
    QTest::newRow("clockwise past 3 o'clock") << 45.0 << 180.0 << 0.5 << -45.0;
    QTest::newRow("counter-clockwise") << 0.0 << -90.0 << 1.0 << 180.0;
    QTest::newRow("a turn away") << 450.0 << 90.0 << 0.0 << -360.0;
}

void tst_Sweep::placesATick()
{
    QFETCH(const double, start);
    QFETCH(const double, length);
    QFETCH(const double, fraction);
    QFETCH(const double, angle);
    gaugeData layer;
    layer.startAngle = start;
    layer.angleLength = length;
    QVERIFY(tickAngle(layer, fraction) == angle);

    // The bias moves the tick along the sweep and leaves its ends.
    layer.bias = 0.75;
    QVERIFY(tickAngle(layer, fraction) == 90.0 - start - std::sqrt(fraction) * length);
}

ADD_TEST_CLASS(tst_Sweep)
#include "tst_sweep.moc"
