#include "model/gaugedata.h"
#include "render/sweep.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

} // namespace

/// The bias of the sweep, and the number and the angles of its ticks.
class tst_Sweep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void biasHalfIsTheIdentity();
    void biasCurve();
    void biasKeepsTheEnds();
    void biasJumpsAtZeroAndOne();
    void biasIsLimited();
    void biasOfNaN();

    void primaryTickCounts();
    void totalTickCounts();
    void fractions();
    void tickAngles();
};

void tst_Sweep::biasHalfIsTheIdentity()
{
    for (const bool curve : {exponentialCurve, midpointCurve}) {
        // The squares of sixteenths are exact.
        for (int i = 0; i <= 16; ++i)
            QVERIFY(biasedFraction(i / 16.0, 0.5, curve) == i / 16.0);
    }
}

void tst_Sweep::biasCurve()
{
    struct Case
    {
        double t;
        double bias;
        bool curve;
        double expected;
    };
    for (const auto &[t, bias, curve, expected] : {
             // 1 - (1 - t)^(2 bias) for a bias below 0.5, t^(2 (1 - bias)) above.
             Case{0.75, 0.25, exponentialCurve, 0.5},
             Case{0.25, 0.75, exponentialCurve, 0.5},
             Case{0.9375, 0.125, exponentialCurve, 0.5},
             Case{0.0625, 0.875, exponentialCurve, 0.5},
             Case{0.3, 0.45, exponentialCurve, 1.0 - std::pow(0.7, 0.9)},
             Case{0.3, 0.55, exponentialCurve, std::pow(0.3, 0.9)},
             Case{0.3, 1.5, exponentialCurve, 1.0},
             Case{0.3, -0.5, exponentialCurve, 0.0},
             // 2 (1 - t) t k + t^2 with k = 2 bias - 0.5, limited to 0 and 1.
             Case{0.25, 0.25, midpointCurve, 0.0625},
             Case{0.25, 0.75, midpointCurve, 0.4375},
             Case{0.75, 0.125, midpointCurve, 0.46875},
             Case{0.4375, 0.0, midpointCurve, 0.0},
             Case{0.75, 0.0, midpointCurve, 0.375},
             Case{0.25, 1.0, midpointCurve, 0.625},
             Case{0.5625, 1.0, midpointCurve, 1.0},
             Case{0.25, 1.125, midpointCurve, 0.71875},
             Case{0.9375, -0.25, midpointCurve, 0.76171875},
         })
        QCOMPARE(biasedFraction(t, bias, curve), expected);
}

void tst_Sweep::biasKeepsTheEnds()
{
    for (const double bias : {1e-300, 0.001, 0.25, 0.4999, 0.5001, 0.75, 0.999, 1.0 - 1e-16}) {
        QVERIFY(biasedFraction(0.0, bias, exponentialCurve) == 0.0);
        QVERIFY(biasedFraction(1.0, bias, exponentialCurve) == 1.0);
    }
    for (const double bias : {-1e300, -3.0, 0.0, 0.1, 0.9, 1.0, 7.0, 1e300}) {
        QVERIFY(biasedFraction(0.0, bias, midpointCurve) == 0.0);
        QVERIFY(biasedFraction(1.0, bias, midpointCurve) == 1.0);
    }
}

void tst_Sweep::biasJumpsAtZeroAndOne()
{
    for (const double t : {0.0, 0.125, 0.5, 1.0}) {
        QVERIFY(biasedFraction(t, 0.0, exponentialCurve) == 1.0);
        QVERIFY(biasedFraction(t, -0.0, exponentialCurve) == 1.0);
        QVERIFY(biasedFraction(t, 1.0, exponentialCurve) == 0.0);
    }
    QVERIFY(biasedFraction(0.5, 0.001, exponentialCurve) < 0.01);
    QVERIFY(biasedFraction(0.5, 0.999, exponentialCurve) > 0.99);
}

void tst_Sweep::biasIsLimited()
{
    for (const double bias : {-infinity, -1e9, -1.0, 0.0, 0.37, 0.63, 1.0, 2.0, 1e9, infinity}) {
        for (const bool curve : {exponentialCurve, midpointCurve}) {
            for (int i = 1; i < 100; ++i) {
                const double fraction = biasedFraction(i / 100.0, bias, curve);
                QVERIFY(fraction >= 0.0 && fraction <= 1.0);
            }
        }
    }
}

void tst_Sweep::biasOfNaN()
{
    for (const bool curve : {exponentialCurve, midpointCurve}) {
        for (const double bias : {0.25, 0.5, 0.75})
            QVERIFY(std::isnan(biasedFraction(notANumber, bias, curve)));
        QVERIFY(std::isnan(biasedFraction(0.5, notANumber, curve)));
    }
}

void tst_Sweep::primaryTickCounts()
{
    struct Case
    {
        double length;
        int divisions;
        qint64 ticks;
    };
    for (const auto &[length, divisions, ticks] :
         {Case{std::nextafter(360.0, 0.0), 4, 5}, Case{360.0, 4, 4}, Case{720.0, 4, 4}, Case{infinity, 4, 4},
          Case{-359.0, 4, 5}, Case{-360.0, 4, 4}, Case{notANumber, 4, 5}, Case{120.0, 0, 1},
          Case{360.0, 0, 0}, Case{120.0, minInt, qint64(minInt) + 1},
          Case{120.0, maxInt, qint64(maxInt) + 1}}) {
        gaugeData layer;
        layer.angleLength = length;
        layer.divisionCount[0] = divisions;
        QCOMPARE(primaryTickCount(layer), ticks);
    }
}

void tst_Sweep::totalTickCounts()
{
    struct Case
    {
        std::array<int, 3> counts;
        quint64 ticks;
    };
    constexpr auto max = quint64(maxInt);
    for (const auto &[counts, ticks] :
         {Case{{3, 1, 1}, 4}, Case{{3, 1, 4}, 4}, Case{{3, 2, 1}, 4 + 3}, Case{{3, 2, 5}, 4 + 3 * 9},
          Case{{3, 2, -5}, 4 + 3}, Case{{0, 5, 4}, 1}, Case{{-1, 5, 4}, 0}, Case{{minInt, 5, 4}, 0},
          Case{{4, maxInt, maxInt}, 5 + 4 * (max * max - 1)},
          Case{{5, maxInt, maxInt}, std::numeric_limits<quint64>::max()}}) {
        gaugeData layer;
        layer.divisionCount = counts;
        QCOMPARE(totalTickCount(layer), ticks);
    }
}

void tst_Sweep::fractions()
{
    QVERIFY(divisionFraction(2.5, 4) == 0.625);
    QVERIFY(divisionFraction(1.0, 3) == 1.0 / 3.0);
    QVERIFY(divisionFraction(double(maxInt), maxInt) == 1.0);
    QVERIFY(std::isnan(divisionFraction(0.0, 0)));
    QVERIFY(std::isnan(divisionFraction(1.0, 0)));
}

void tst_Sweep::tickAngles()
{
    struct Case
    {
        double start;
        double length;
        double fraction;
        double angle;
    };
    for (const auto &[start, length, fraction, angle] :
         {Case{0.0, 90.0, 0.0, 90.0}, Case{0.0, 90.0, 1.0, 0.0}, Case{-90.0, 180.0, 0.0, 180.0},
          Case{0.0, -90.0, 1.0, 180.0}, Case{450.0, 90.0, 0.0, -360.0}}) {
        gaugeData layer;
        layer.startAngle = start;
        layer.angleLength = length;
        QCOMPARE(tickAngle(layer, fraction), angle);
        layer.bias = 0.75;
        QCOMPARE(tickAngle(layer, 0.25), 90.0 - start - 0.5 * length);
    }
}

ADD_TEST_CLASS(tst_Sweep)
#include "tst_sweep.moc"
