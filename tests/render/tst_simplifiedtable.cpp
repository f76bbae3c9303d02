#include "render/simplifiedtable.h"
#include "support/random.h"
#include "support/testmain.h"
#include "support/warnings.h"

#include <QTest>

#include <algorithm>
#include <cmath>

/// Polylines with the fewest points.
class tst_SimplifiedTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { failOnUnexpectedWarnings(); }

    void keepsWhatCannotBeSimpler();
    void hasNoMorePointsThanASearchFinds();
    void simplifiesLongPolylines();
};

namespace {

double at(const QList<QPointF> &line, double x)
{
    const auto right = std::ranges::lower_bound(line.begin() + 1, line.end() - 1, x, {}, &QPointF::x);
    const QPointF left = *(right - 1);
    return left.y() + (right->y() - left.y()) * ((x - left.x()) / (right->x() - left.x()));
}

/// How far two polylines are apart. The distance is largest at a point of one of them.
double distance(const QList<QPointF> &one, const QList<QPointF> &other)
{
    double largest = 0.0;
    for (const QPointF &point : one + other)
        largest = std::max(largest, std::abs(at(one, point.x()) - at(other, point.x())));
    return largest;
}

/// A polyline over the whole numbers from 0 whose next y differs by up to @a step.
QList<QPointF> randomPolyline(Random &random, int pointCount, int step)
{
    QList<QPointF> line{{0.0, 0.0}};
    while (line.size() < pointCount)
        line.append(line.constLast() + QPointF(1.0, random.between(-step, step)));
    return line;
}

bool isWithin(const QPointF &from, const QPointF &to, const QList<QPointF> &exact, double maxError)
{
    const QList<QPointF> line{from, to};
    const auto isClose = [&](const QPointF &point) {
        return std::abs(at(line, point.x()) - at(exact, point.x())) <= maxError;
    };
    return isClose(from) && isClose(to) && std::ranges::all_of(exact, [&](const QPointF &point) {
               return point.x() <= from.x() || point.x() >= to.x() || isClose(point);
           });
}

/// The fewest points of a polyline within @a maxError of @a exact whose points are on a grid.
qsizetype fewestOnGrid(const QList<QPointF> &exact, double maxError)
{
    constexpr double columns = 4.0; // from one point of the polyline to the next
    constexpr int rows = 8;         // above the polyline, and below it
    QList<QPointF> candidates{exact.constFirst()};
    for (double x = 1.0 / columns; x < exact.constLast().x(); x += 1.0 / columns) {
        for (int row = -rows; row <= rows; ++row)
            candidates.append({x, at(exact, x) + maxError * row / rows});
    }
    candidates.append(exact.constLast());

    QList<qsizetype> pointCounts{1};
    for (qsizetype to = 1; to < candidates.size(); ++to) {
        qsizetype fewest = candidates.size();
        for (qsizetype from = 0; from < to; ++from) {
            if (pointCounts.at(from) + 1 < fewest && candidates.at(from).x() < candidates.at(to).x() &&
                isWithin(candidates.at(from), candidates.at(to), exact, maxError))
                fewest = pointCounts.at(from) + 1;
        }
        pointCounts.append(fewest);
    }
    return pointCounts.constLast();
}

} // namespace

void tst_SimplifiedTable::keepsWhatCannotBeSimpler()
{
    const QList<QPointF> two{{1.0, 2.0}, {3.0, 4.0}};
    QCOMPARE(simplifiedTable({}, 1.0), QList<QPointF>());
    QCOMPARE(simplifiedTable(two, 1.0), two);
    const QList<QPointF> three{{1.0, 2.0}, {2.0, 3.0}, {3.0, 4.0}};
    QCOMPARE(simplifiedTable(three, 0.0), three);
    QCOMPARE(simplifiedTable(three, 1e-9), (QList<QPointF>{{1.0, 2.0}, {3.0, 4.0}}));
}

void tst_SimplifiedTable::hasNoMorePointsThanASearchFinds()
{
    Random random(1);
    int equalCount = 0;
    constexpr int times = 150;
    for (int time = 0; time < times; ++time) {
        const QList<QPointF> exact = randomPolyline(random, random.between(3, 7), 3);
        const double maxError = random.between(1, 8) / 4.0;
        const QList<QPointF> table = simplifiedTable(exact, maxError);
        QVERIFY(distance(table, exact) <= maxError * (1.0 + 1e-12));
        QCOMPARE(table.constFirst(), exact.constFirst());
        QCOMPARE(table.constLast(), exact.constLast());
        const qsizetype fewest = fewestOnGrid(exact, maxError);
        QVERIFY(table.size() <= fewest);
        equalCount += table.size() == fewest ? 1 : 0;
    }
    // Points beside the grid are seldom better, so the search is a strict check.
    QVERIFY(equalCount > times * 8 / 10);
}

void tst_SimplifiedTable::simplifiesLongPolylines()
{
    Random random(2);
    for (const double maxError : {0.4, 3.0, 50.0, 1e6}) {
        const QList<QPointF> exact = randomPolyline(random, 20'000, 2);
        const QList<QPointF> table = simplifiedTable(exact, maxError);
        QVERIFY(distance(table, exact) <= maxError * (1.0 + 1e-9));
        QVERIFY(std::ranges::is_sorted(table, std::ranges::less_equal(), &QPointF::x));
        QVERIFY(table.size() < exact.size());
    }
}

ADD_TEST_CLASS(tst_SimplifiedTable)
#include "tst_simplifiedtable.moc"
