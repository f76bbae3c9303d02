#include "fit/curvetable.h"
#include "fit/scalecurve.h"
#include "fit/tablereader.h"
#include "model/gaugedata.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QRegularExpression>
#include <QTest>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

/// The angle tables of curves, read back from their files.
class tst_CurveTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void departsByTheBound_data();
    void departsByTheBound();
    void needsFewPoints();
};

namespace {

using Points = QList<QPointF>;

/// The integers of an array in a C header.
QList<double> headerArray(const QByteArray &header, const QString &name)
{
    const QRegularExpression array(name + uR"(\[\] = \{([^}]*)\})"_s);
    QList<double> numbers;
    for (const QString &number : array.match(QString::fromUtf8(header)).captured(1).split(u',')) {
        if (!number.trimmed().isEmpty())
            numbers.append(number.trimmed().toDouble());
    }
    return numbers;
}

Points headerPoints(const QByteArray &header)
{
    const QRegularExpression unit(u"_UNIT (\\d+)"_s);
    const double one = unit.match(QString::fromUtf8(header)).captured(1).toDouble();
    const QList<double> values = headerArray(header, u"g_values"_s);
    const QList<double> tenths = headerArray(header, u"g_angles"_s);
    Points points;
    for (qsizetype i = 0; i < std::min(values.size(), tenths.size()); ++i)
        points.append({values.at(i) / one, tenths.at(i) / 10.0});
    return points;
}

Points pointsOf(const ScaleCurve &curve, double min, double max, const QString &format)
{
    const CurveTable table = makeCurveTable(curve, min, max, format, u"g"_s, {});
    if (!table.failure.isEmpty())
        return {};
    return format == u"h"_s ? headerPoints(table.bytes) : readTable(table.bytes).points;
}

/// Returns the largest difference between the curve and the lines through @a points, at many values of each
/// gap between measured points.
double departure(const ScaleCurve &curve, const Points &points, double min, double max)
{
    constexpr int valuesInGap = 1000;
    const ScaleCurve lines(points, ScaleCurve::Kind::Straight, true);
    QList<double> ends{min};
    for (const QPointF &point : curve.points()) {
        if (point.x() > min && point.x() < max)
            ends.append(point.x());
    }
    ends.append(max);
    double largest = 0.0;
    for (qsizetype gap = 1; gap < ends.size(); ++gap) {
        for (int i = 0; i <= valuesInGap; ++i) {
            const double fraction = static_cast<double>(i) / valuesInGap;
            const double value = ends.at(gap - 1) * (1.0 - fraction) + ends.at(gap) * fraction;
            largest = std::max(largest, std::abs(lines.angle(value) - curve.angle(value)));
        }
    }
    return largest;
}

/// Points in equal steps whose angles rise slowly, with one gap of @a rise degrees.
Points withStep(int count, double rise)
{
    Points points;
    for (int i = 0; i < count; ++i)
        points.append({static_cast<double>(i), 0.001 * i + (i > count / 2 ? rise : 0.0)});
    return points;
}

} // namespace

void tst_CurveTable::departsByTheBound_data()
{
    QTest::addColumn<Points>("measured");
    QTest::addColumn<ScaleCurve::Kind>("kind");
    QTest::addColumn<double>("max");
    QTest::addColumn<QString>("format");
    QTest::addColumn<double>("bound");
    const Points bent{{0.0, 0.0}, {10.0, 60.0}, {40.0, 90.0}};
    for (const auto &[format, bound] : {std::pair(u"json"_s, 0.1), {u"xml"_s, 0.1}, {u"h"_s, 0.11}}) {
        const auto row = [&, &name = format, &limit = bound](const char *title, const Points &points,
                                                             ScaleCurve::Kind kind, double max) {
            QTest::addRow("%s, %s", title, qPrintable(name)) << points << kind << max << name << limit;
        };
        row("smooth", bent, ScaleCurve::Kind::Smooth, 40.0);
        row("straight", bent, ScaleCurve::Kind::Straight, 40.0);
        row("extrapolated", bent, ScaleCurve::Kind::Smooth, 70.0);
        row("a step of 300 degrees", withStep(200, 300.0), ScaleCurve::Kind::Smooth, 199.0);
        row("many turns", {{0.0, 0.0}, {1.0, 100.0}, {2.0, 30'000.0}}, ScaleCurve::Kind::Smooth, 2.0);
    }
    const Points jump{{0.0, 0.0}, {1.0, 10.0}, {std::nextafter(1.0, 2.0), 40.0}, {2.0, 50.0}};
    QTest::newRow("a jump, json") << jump << ScaleCurve::Kind::Smooth << 2.0 << u"json"_s << 0.1;
    QTest::newRow("a jump, xml") << jump << ScaleCurve::Kind::Straight << 2.0 << u"xml"_s << 0.1;
    QTest::newRow("a step between 20,000 points")
        << withStep(20'000, 90.0) << ScaleCurve::Kind::Smooth << 19'999.0 << u"json"_s << 0.1;
}

void tst_CurveTable::departsByTheBound()
{
    QFETCH(const Points, measured);
    QFETCH(const ScaleCurve::Kind, kind);
    QFETCH(const double, max);
    QFETCH(const QString, format);
    QFETCH(const double, bound);
    const ScaleCurve curve(measured, kind, true);
    const Points points = pointsOf(curve, 0.0, max, format);
    QVERIFY(points.size() >= 2);
    const double largest = departure(curve, points, 0.0, max);
    QVERIFY2(largest <= bound + 1e-6, qPrintable(QString::number(largest)));
}

void tst_CurveTable::needsFewPoints()
{
    const ScaleCurve lines({{0.0, 0.0}, {10.0, 60.0}, {40.0, 90.0}}, ScaleCurve::Kind::Straight);
    QCOMPARE(pointsOf(lines, 0.0, 40.0, u"json"_s).size(), 3);
}

ADD_TEST_CLASS(tst_CurveTable)
#include "tst_curvetable.moc"
