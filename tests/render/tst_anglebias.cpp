#include "render/sweep.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr bool exponential = false;
constexpr bool midpoint = true;

} // namespace

/// The bending of a linear fraction of the sweep.
class tst_AngleBias : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void halfIsTheIdentity_data();
    void halfIsTheIdentity();
    void followsItsCurve_data();
    void followsItsCurve();
    void exponentialKeepsTheEnds_data();
    void exponentialKeepsTheEnds();
    void exponentialJumpsAtItsLimits_data();
    void exponentialJumpsAtItsLimits();
    void exponentialIsSmoothJustInsideItsLimits();
    void midpointKeepsTheEnds_data();
    void midpointKeepsTheEnds();
    void midpointGathersAHalf_data();
    void midpointGathersAHalf();
    void biasOutOfRange_data();
    void biasOutOfRange();
    void whatIsNotANumberPassesThrough_data();
    void whatIsNotANumberPassesThrough();
    void neverLeavesTheSweep_data();
    void neverLeavesTheSweep();
};

void tst_AngleBias::halfIsTheIdentity_data()
{
    QTest::addColumn<bool>("curve");
    QTest::newRow("exponential") << exponential;
    QTest::newRow("midpoint") << midpoint;
}

void tst_AngleBias::halfIsTheIdentity()
{
    QFETCH(const bool, curve);
    // Sixteenths have exact squares, so that nothing is rounded on the way.
    for (int i = 0; i <= 16; ++i)
        QVERIFY(biasedFraction(i / 16.0, 0.5, curve) == i / 16.0);
}

void tst_AngleBias::followsItsCurve_data()
{
    QTest::addColumn<double>("t");
    QTest::addColumn<double>("bias");
    QTest::addColumn<bool>("curve");
    QTest::addColumn<double>("expected");
    // Exponents: 2 bias below a half, on the rest of the sweep; 2 (1 - bias) above.
    QTest::newRow("square root of the rest") << 0.75 << 0.25 << exponential << 0.5;
    QTest::newRow("square root") << 0.25 << 0.75 << exponential << 0.5;
    QTest::newRow("fourth root of the rest") << 0.9375 << 0.125 << exponential << 0.5;
    QTest::newRow("fourth root") << 0.0625 << 0.875 << exponential << 0.5;
    QTest::newRow("just below a half") << 0.3 << 0.45 << exponential << 1.0 - std::pow(0.7, 0.9);
    QTest::newRow("just above a half") << 0.3 << 0.55 << exponential << std::pow(0.3, 0.9);
    // 2 (1 - t) t k + t t with k = 2 bias - 0.5.
    QTest::newRow("control at 0") << 0.25 << 0.25 << midpoint << 0.0625;
    QTest::newRow("control at 1") << 0.25 << 0.75 << midpoint << 0.4375;
    QTest::newRow("control at -0.25") << 0.75 << 0.125 << midpoint << 0.46875;
    QTest::newRow("control at 1.25") << 0.25 << 0.875 << midpoint << 0.53125;
}

void tst_AngleBias::followsItsCurve()
{
    QFETCH(const double, t);
    QFETCH(const double, bias);
    QFETCH(const bool, curve);
    QFETCH(const double, expected);
    const double found = biasedFraction(t, bias, curve);
    QVERIFY2(std::abs(found - expected) <= 1e-15, qPrintable(QString::number(found, 'g', 17)));
}

void tst_AngleBias::exponentialKeepsTheEnds_data()
{
    QTest::addColumn<double>("bias");
    for (const double bias : {1e-300, 0.001, 0.25, 0.4999, 0.5, 0.5001, 0.75, 0.999, 1.0 - 1e-16})
        QTest::addRow("%.17g", bias) << bias;
}

void tst_AngleBias::exponentialKeepsTheEnds()
{
    QFETCH(const double, bias);
    QVERIFY(biasedFraction(0.0, bias, exponential) == 0.0);
    QVERIFY(biasedFraction(1.0, bias, exponential) == 1.0);
}

void tst_AngleBias::exponentialJumpsAtItsLimits_data()
{
    QTest::addColumn<double>("bias");
    QTest::addColumn<double>("everywhere");
    QTest::newRow("0 gathers all at the end") << 0.0 << 1.0;
    QTest::newRow("negative zero is zero") << -0.0 << 1.0;
    QTest::newRow("1 gathers all at the start") << 1.0 << 0.0;
}

void tst_AngleBias::exponentialJumpsAtItsLimits()
{
    QFETCH(const double, bias);
    QFETCH(const double, everywhere);
    for (const double t : {0.0, 0.125, 0.5, 0.9, 1.0})
        QVERIFY(biasedFraction(t, bias, exponential) == everywhere);
}

void tst_AngleBias::exponentialIsSmoothJustInsideItsLimits()
{
    // 1 - (1 - t)^0.002 and t^0.002: from end to end, but steep at one of them.
    QVERIFY(biasedFraction(0.5, 0.001, exponential) < 0.01);
    QVERIFY(biasedFraction(0.5, 0.001, exponential) > 0.0);
    QVERIFY(biasedFraction(0.5, 0.999, exponential) > 0.99);
    QVERIFY(biasedFraction(0.5, 0.999, exponential) < 1.0);
}

void tst_AngleBias::midpointKeepsTheEnds_data()
{
    QTest::addColumn<double>("bias");
    for (const double bias : {-1e300, -3.0, 0.0, 0.1, 0.5, 0.9, 1.0, 7.0, 1e300})
        QTest::addRow("%g", bias) << bias;
}

void tst_AngleBias::midpointKeepsTheEnds()
{
    QFETCH(const double, bias);
    QVERIFY(biasedFraction(0.0, bias, midpoint) == 0.0);
    QVERIFY(biasedFraction(1.0, bias, midpoint) == 1.0);
}

void tst_AngleBias::midpointGathersAHalf_data()
{
    QTest::addColumn<double>("t");
    QTest::addColumn<double>("bias");
    QTest::addColumn<double>("expected");
    // t (2t - 1) below a half of the sweep is negative, t (3 - 2t) above it exceeds 1.
    QTest::newRow("bias 0, an eighth") << 0.125 << 0.0 << 0.0;
    QTest::newRow("bias 0, just below the middle") << 0.4375 << 0.0 << 0.0;
    QTest::newRow("bias 0, the middle") << 0.5 << 0.0 << 0.0;
    QTest::newRow("bias 0, three quarters") << 0.75 << 0.0 << 0.375;
    QTest::newRow("bias 1, a quarter") << 0.25 << 1.0 << 0.625;
    QTest::newRow("bias 1, the middle") << 0.5 << 1.0 << 1.0;
    QTest::newRow("bias 1, just above the middle") << 0.5625 << 1.0 << 1.0;
    QTest::newRow("bias 1, seven eighths") << 0.875 << 1.0 << 1.0;
}

void tst_AngleBias::midpointGathersAHalf()
{
    QFETCH(const double, t);
    QFETCH(const double, bias);
    QFETCH(const double, expected);
    QVERIFY(biasedFraction(t, bias, midpoint) == expected);
}

void tst_AngleBias::biasOutOfRange_data()
{
    QTest::addColumn<double>("t");
    QTest::addColumn<double>("bias");
    QTest::addColumn<bool>("curve");
    QTest::addColumn<double>("expected");
    for (const double t : {0.0, 0.3, 1.0}) {
        for (const double bias : {1.5, 1e300, infinity})
            QTest::addRow("exponential %g at %g", bias, t) << t << bias << exponential << 1.0;
        for (const double bias : {-0.5, -1e300, -infinity})
            QTest::addRow("exponential %g at %g", bias, t) << t << bias << exponential << 0.0;
    }
    QTest::newRow("midpoint above") << 0.25 << 1.125 << midpoint << 0.71875;
    QTest::newRow("midpoint far above") << 0.25 << 100.0 << midpoint << 1.0;
    QTest::newRow("midpoint below") << 0.9375 << -0.25 << midpoint << 0.76171875;
    QTest::newRow("midpoint far below") << 0.25 << -100.0 << midpoint << 0.0;
}

void tst_AngleBias::biasOutOfRange()
{
    QFETCH(const double, t);
    QFETCH(const double, bias);
    QFETCH(const bool, curve);
    QFETCH(const double, expected);
    QVERIFY(biasedFraction(t, bias, curve) == expected);
}

void tst_AngleBias::whatIsNotANumberPassesThrough_data()
{
    QTest::addColumn<double>("t");
    QTest::addColumn<double>("bias");
    QTest::addColumn<bool>("curve");
    QTest::newRow("fraction, below a half") << notANumber << 0.25 << exponential;
    QTest::newRow("fraction, a half") << notANumber << 0.5 << exponential;
    QTest::newRow("fraction, above a half") << notANumber << 0.75 << exponential;
    QTest::newRow("fraction, midpoint") << notANumber << 0.5 << midpoint;
    QTest::newRow("bias, exponential") << 0.5 << notANumber << exponential;
    QTest::newRow("bias, midpoint") << 0.5 << notANumber << midpoint;
    QTest::newRow("infinity times zero") << 0.0 << infinity << midpoint;
}

void tst_AngleBias::whatIsNotANumberPassesThrough()
{
    QFETCH(const double, t);
    QFETCH(const double, bias);
    QFETCH(const bool, curve);
    QVERIFY(std::isnan(biasedFraction(t, bias, curve)));
}

void tst_AngleBias::neverLeavesTheSweep_data()
{
    QTest::addColumn<double>("bias");
    for (const double bias : {-infinity, -1e9, -1.0, 0.0, 0.01, 0.37, 0.5, 0.63, 0.99, 1.0, 2.0, 1e9})
        QTest::addRow("%g", bias) << bias;
}

void tst_AngleBias::neverLeavesTheSweep()
{
    QFETCH(const double, bias);
    for (const bool curve : {exponential, midpoint}) {
        for (int i = 1; i < 100; ++i) {
            const double found = biasedFraction(i / 100.0, bias, curve);
            QVERIFY(found >= 0.0);
            QVERIFY(found <= 1.0);
        }
    }
}

ADD_TEST_CLASS(tst_AngleBias)
#include "tst_anglebias.moc"
