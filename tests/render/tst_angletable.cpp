#include "model/gaugedata.h"
#include "render/angletable.h"
#include "render/keyframes.h"
#include "support/namedvalues.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

/// The angles of a scale as a table with few points.
class tst_AngleTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void anglesAreThoseOfTheTicks();
    void departsByAtMostTheError_data();
    void departsByAtMostTheError();
    void hasTheFewestPoints();
    void straightScalesHaveTwoPoints();
    void jumpsTakeAdjacentValues();
    void valuesAscend();
    void noScale_data();
    void noScale();
    void hostileRecordsEnd_data();
    void hostileRecordsEnd();
};

namespace {

gaugeData biased(double bias, bool curve)
{
    gaugeData layer;
    layer.bias = bias;
    layer.midpointBias = curve;
    return layer;
}

/// The angle of a value by straight lines between the points of a table.
double interpolated(const QList<QPointF> &table, double value)
{
    const auto right = std::ranges::lower_bound(table.begin() + 1, table.end() - 1, value, {}, &QPointF::x);
    const QPointF left = *(right - 1);
    return left.y() + (right->y() - left.y()) * ((value - left.x()) / (right->x() - left.x()));
}

/// Values of the layer's scale: evenly spread, close to both ends, and at and beside the points of the table.
QList<double> probes(const gaugeData &layer, const QList<QPointF> &table)
{
    const double first = layer.tickCountStart;
    const double length = layer.divisionCount[0] * layer.tickCountIncrement;
    QList<double> values;
    for (int i = 0; i <= 300; ++i)
        values.append(first + length * (i / 300.0));
    for (int exponent = 1; exponent < 900; exponent += 3) {
        const double distance = std::ldexp(length * 1.3, -exponent);
        values << first + distance << first + length - distance;
    }
    for (const QPointF &point : table)
        values << std::nextafter(point.x(), -infinity) << point.x() << std::nextafter(point.x(), infinity);
    const double closest = std::ldexp(std::abs(length), -900);
    values.removeIf([&table, closest](double value) {
        const double distance = std::min(value - table.constFirst().x(), table.constLast().x() - value);
        return distance < 0.0 || (distance > 0.0 && distance <= closest);
    });
    return values;
}

/// How far an angle is from those of a position and of the nearest others that doubles can tell apart.
double distance(double angle, const gaugeData &layer, double position)
{
    double one = position;
    double other = position;
    for (int step = 0; step < 2; ++step) {
        one = std::max(std::nextafter(one, -infinity), 0.0);
        other = std::min<double>(std::nextafter(other, infinity), layer.divisionCount[0]);
    }
    const auto [min, max] = std::minmax({scaleAngle(layer, one), scaleAngle(layer, other)});
    return std::max({min - angle, angle - max, 0.0});
}

/// The largest distance of a table from the angles of the layer.
double largestError(const gaugeData &layer, const QList<QPointF> &table)
{
    const double last = layer.tickCountStart + layer.divisionCount[0] * layer.tickCountIncrement;
    double largest = 0.0;
    for (const double value : probes(layer, table)) {
        const double position = value == last ? layer.divisionCount[0]
                                              : (value - layer.tickCountStart) / layer.tickCountIncrement;
        largest = std::max(largest, distance(interpolated(table, value), layer, position));
    }
    return largest;
}

} // namespace

void tst_AngleTable::anglesAreThoseOfTheTicks()
{
    for (const double length : {-270.0, 123.4, 360.0}) {
        gaugeData layer = biased(0.3, midpointCurve);
        layer.startAngle = -99.9;
        layer.angleLength = length;
        layer.divisionCount[0] = 7;
        const QList<QPointF> ticks = keyframes(layer);
        for (qsizetype tick = 0; tick < ticks.size(); ++tick)
            QVERIFY(scaleAngle(layer, static_cast<double>(tick)) == ticks.at(tick).y());
        QCOMPARE(scaleAngle(layer, 7.0), -99.9 + length);
    }
}

void tst_AngleTable::departsByAtMostTheError_data()
{
    QTest::addColumn<double>("bias");
    QTest::addColumn<bool>("curve");
    for (const double bias : {0.0, 1e-300, 1e-17, 0.001, 0.01, 0.1, 0.25, 0.4, 0.499, 0.5, 0.6, 0.75, 0.9,
                              0.99, 0.999, 1.0 - 1e-16, 1.0, -0.3, 1.3})
        QTest::addRow("exponential %g", bias) << bias << exponentialCurve;
    for (const double bias :
         {-1e300, -1e9, -5.0, -0.2, 0.0, 0.1, 0.25, 0.3, 0.5, 0.6, 0.75, 0.9, 1.0, 1.5, 100.0, 1e9, 1e300})
        QTest::addRow("midpoint %g", bias) << bias << midpointCurve;
}

void tst_AngleTable::departsByAtMostTheError()
{
    QFETCH(const double, bias);
    QFETCH(const bool, curve);
    struct Values
    {
        double start;
        double increment;
        int count;
    };
    for (const auto &[start, increment, count] :
         {Values{0.0, 20.0, 3}, Values{40.0, 0.1, 8}, Values{-60.0, 20.0, 3}, Values{10.0, -2.5, 4},
          Values{1e6, 1e-3, 10}, Values{0.0, 1e-12, 3}}) {
        for (const double length : {120.0, -720.0}) {
            for (const double maxError : {0.002, 3.0}) {
                gaugeData layer = biased(bias, curve);
                layer.startAngle = -135.0;
                layer.angleLength = length;
                layer.divisionCount[0] = count;
                layer.tickCountStart = start;
                layer.tickCountIncrement = increment;
                const QList<QPointF> table = angleTablePoints(layer, maxError);
                QVERIFY(table.size() >= 2);
                const double error = largestError(layer, table);
                QVERIFY2(error <= maxError,
                         qPrintable(u"start %1, increment %2, length %3: %4 is more than %5"_s.arg(start)
                                        .arg(increment)
                                        .arg(length)
                                        .arg(error)
                                        .arg(maxError)));
            }
        }
    }
}

void tst_AngleTable::hasTheFewestPoints()
{
    // This curve is a parabola, length t^2. With s = sqrt(maxError / length), the first and the last line,
    // which end on the curve, span up to (1 + sqrt 2) s. Each other line begins and ends the error below the
    // curve, touches the curve the error above it, and spans up to 2 sqrt(2) s.
    const gaugeData parabola = biased(0.25, midpointCurve);
    for (const double maxError : {0.0123, 0.1, 0.77, 3.0}) {
        const double s = std::sqrt(maxError / parabola.angleLength);
        const double innerLines = (1.0 - 2.0 * (1.0 + std::sqrt(2.0)) * s) / (2.0 * std::sqrt(2.0) * s);
        QCOMPARE(static_cast<double>(angleTablePoints(parabola, maxError).size()),
                 std::ceil(innerLines) + 3.0);
    }
}

void tst_AngleTable::straightScalesHaveTwoPoints()
{
    gaugeData layer;
    layer.startAngle = 30.0;
    layer.divisionCount[0] = 3;
    layer.tickCountStart = 0.1;
    layer.tickCountIncrement = 0.1;
    QCOMPARE(angleTablePoints(layer, 0.001),
             (QList<QPointF>{{0.1, scaleAngle(layer, 0.0)}, {0.1 + 3 * 0.1, scaleAngle(layer, 3.0)}}));
    // All ticks are at one end.
    layer.bias = 0.0;
    QCOMPARE(angleTablePoints(layer, 0.1), (QList<QPointF>{{0.1, 150.0}, {0.1 + 3 * 0.1, 150.0}}));
    // A full circle ends where it began, one turn later.
    layer = {};
    layer.angleLength = 360.0;
    QCOMPARE(angleTablePoints(layer, 0.1), (QList<QPointF>{{0.0, 0.0}, {4.0, 360.0}}));
}

void tst_AngleTable::jumpsTakeAdjacentValues()
{
    const QList<QPointF> atTheEnd = angleTablePoints(biased(1e-300, exponentialCurve), 0.1);
    QCOMPARE(atTheEnd.size(), 3);
    QVERIFY(std::abs(interpolated(atTheEnd, std::nextafter(4.0, 0.0))) <= 0.1);
    QCOMPARE(atTheEnd.constLast(), QPointF(4.0, 120.0));
}

void tst_AngleTable::valuesAscend()
{
    gaugeData layer = biased(0.75, exponentialCurve);
    layer.divisionCount[0] = 2;
    layer.tickCountStart = 100.0;
    layer.tickCountIncrement = -50.0;
    const QList<QPointF> table = angleTablePoints(layer, 0.1);
    QCOMPARE(table.constFirst(), QPointF(0.0, 120.0));
    QCOMPARE(table.constLast(), QPointF(100.0, 0.0));
    QVERIFY(std::ranges::is_sorted(table, std::ranges::less_equal(), &QPointF::x));
}

void tst_AngleTable::noScale_data()
{
    QTest::addColumn<double>("start");
    QTest::addColumn<double>("increment");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("length");
    QTest::newRow("increment 0") << 0.0 << 0.0 << 4 << 120.0;
    QTest::newRow("increment that is lost in the value") << 1e17 << 1.0 << 4 << 120.0;
    QTest::newRow("no division") << 0.0 << 1.0 << 0 << 120.0;
    QTest::newRow("smallest count") << 0.0 << 1.0 << minInt << 120.0;
    QTest::newRow("start value") << infinity << 1.0 << 4 << 120.0;
    QTest::newRow("increment") << 0.0 << notANumber << 4 << 120.0;
    QTest::newRow("last value") << 0.0 << 1e308 << 4 << 120.0;
    QTest::newRow("range of values") << -1.7e308 << 1e308 << 3 << 120.0;
    QTest::newRow("length") << 0.0 << 1.0 << 4 << -infinity;
}

void tst_AngleTable::noScale()
{
    QFETCH(const double, start);
    QFETCH(const double, increment);
    QFETCH(const int, count);
    QFETCH(const double, length);
    gaugeData layer;
    layer.tickCountStart = start;
    layer.tickCountIncrement = increment;
    layer.divisionCount[0] = count;
    layer.angleLength = length;
    QCOMPARE(angleTablePoints(layer, 0.1), QList<QPointF>());
}

void tst_AngleTable::hostileRecordsEnd_data()
{
    QTest::addColumn<double>("number");
    for (const double number : {1e308, -1e308, 1e15, -1e9, 1e-308, 5e-324, -0.0, notANumber, infinity})
        QTest::addRow("%g", number) << number;
}

void tst_AngleTable::hostileRecordsEnd()
{
    QFETCH(const double, number);
    using Field = double gaugeData::*;
    for (const Field field : {&gaugeData::startAngle, &gaugeData::angleLength, &gaugeData::bias,
                              &gaugeData::tickCountStart, &gaugeData::tickCountIncrement}) {
        for (const bool curve : {exponentialCurve, midpointCurve}) {
            for (const double bias : {0.5, 0.97}) {
                for (const double maxError : {1e-4, 1e308}) {
                    gaugeData layer = biased(bias, curve);
                    layer.divisionCount[0] = maxInt;
                    layer.*field = number;
                    const QList<QPointF> table = angleTablePoints(layer, maxError);
                    QVERIFY(std::ranges::is_sorted(table, std::ranges::less_equal(), &QPointF::x));
                    for (const QPointF &point : table)
                        QVERIFY(std::isfinite(point.x()) && std::isfinite(point.y()));
                }
            }
        }
    }
    QCOMPARE(angleTablePoints(biased(0.25, midpointCurve), 5e-324), QList<QPointF>());
}

ADD_TEST_CLASS(tst_AngleTable)
#include "tst_angletable.moc"
