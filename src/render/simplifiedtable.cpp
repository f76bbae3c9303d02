#include "render/simplifiedtable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

/// The two edges of the strip.
enum Side { Lower, Upper };

Side opposite(Side side)
{
    return side == Lower ? Upper : Lower;
}

/// 1 or -1. A y times this factor is larger the further it is outside the strip.
double outwards(Side side)
{
    return side == Upper ? 1.0 : -1.0;
}

/// A point on an edge of the strip.
struct EdgePoint
{
    QPointF position;
    qsizetype next; ///< The index of the first vertex of the strip to the right of the point.
};

constexpr double infinity = std::numeric_limits<double>::infinity();

/// The slope of the line through two points. Infinite where one is above the other.
double slope(const QPointF &left, const QPointF &right)
{
    const double height = right.y() - left.y();
    const double width = right.x() - left.x();
    return width == 0.0 ? std::copysign(infinity, height) : height / width;
}

/// The y of the straight line between two points. Not by its slope, which can be infinite.
double interpolated(const QPointF &left, const QPointF &right, double x)
{
    return left.y() + (right.y() - left.y()) * ((x - left.x()) / (right.x() - left.x()));
}

/// A line that touches an edge of the strip at a point.
struct Line
{
    EdgePoint touch;
    double slope;

    [[nodiscard]] double at(double x) const { return touch.position.y() + slope * (x - touch.position.x()); }
};

/// Those points of an edge that a line from a point further right can touch first: their convex hull, without
/// the points on the left that no later line can touch.
class Hull
{
public:
    explicit Hull(Side side)
        : m_outwards(outwards(side))
    {
    }

    void append(const EdgePoint &point)
    {
        while (m_points.size() - m_first >= 2 &&
               m_outwards * slope(m_points.end()[-2].position, m_points.end()[-1].position) >=
                   m_outwards * slope(m_points.end()[-1].position, point.position))
            m_points.removeLast();
        m_points.append(point);
    }

    /// The slope of the line through @a point, further right, that touches the hull. Infinite without points.
    [[nodiscard]] double tangentSlope(const QPointF &point)
    {
        if (m_points.isEmpty())
            return -m_outwards * infinity;
        double tangent = slope(m_points.at(m_first).position, point);
        while (m_first + 1 < m_points.size()) {
            const double next = slope(m_points.at(m_first + 1).position, point);
            if (m_outwards * next < m_outwards * tangent)
                break;
            tangent = next;
            ++m_first;
        }
        return tangent;
    }

private:
    double m_outwards;
    QList<EdgePoint> m_points;
    qsizetype m_first = 0;
};

/// The points at most one unit above or below a polyline. At each end of it, the strip is a single point.
class Strip
{
public:
    explicit Strip(const QList<QPointF> &centre)
        : m_centre(centre)
    {
    }

    [[nodiscard]] qsizetype last() const { return m_centre.size() - 1; }

    [[nodiscard]] EdgePoint vertex(Side side, qsizetype index) const
    {
        const double height = index == 0 || index == last() ? 0.0 : outwards(side);
        return {m_centre.at(index) + QPointF(0.0, height), index + 1};
    }

    /// Where @a line leaves the strip between the vertices at @a index - 1 and @a index.
    [[nodiscard]] EdgePoint exit(const Line &line, Side side, qsizetype index) const
    {
        const QPointF &left = m_centre.at(index - 1);
        const QPointF &right = m_centre.at(index);
        const double before = std::max(0.0, outwards(side) * (left.y() - line.at(left.x())) + 1.0);
        const double after = std::max(0.0, outwards(side) * (line.at(right.x()) - right.y()) - 1.0);
        // Through the end of the strip, where it is a point.
        if (after == 0.0)
            return {{right.x(), line.at(right.x())}, index};
        const double x = left.x() + (right.x() - left.x()) * (before / (before + after));
        return {{x, line.at(x)}, index};
    }

private:
    QList<QPointF> m_centre;
};

/// By how much a line may leave the strip in units of maxError, so that rounding does not matter where it
/// touches the edge.
constexpr double edgeTolerance = 1e-9;
constexpr double roundingMargin = 1e-6;

/// A line of the result, and the part of it on which the next line may begin.
struct Link
{
    Line line;
    double exit; ///< x. The part begins where the line touches the strip.
};

/// The lines through a part of the strip. All are between the steepest upwards, which is limited by the upper
/// edge on its right, and the steepest downwards, which is limited by the lower edge on its right.
class LinesThroughStrip
{
public:
    /// Adds the next point of an edge, to the right of all others of the opposite edge.
    void append(Side side, const EdgePoint &point)
    {
        limit(side, point);
        m_hulls[side].append(point);
    }

    /// Adds the vertices of both edges.
    void append(const EdgePoint &lower, const EdgePoint &upper)
    {
        limit(Lower, lower);
        limit(Upper, upper);
        m_hulls[Lower].append(lower);
        m_hulls[Upper].append(upper);
    }

    /// Whether all lines pass beyond this point of an edge.
    [[nodiscard]] bool allPassBeyond(Side side, const QPointF &point) const
    {
        return outwards(side) * (m_steepest[opposite(side)].at(point.x()) - point.y()) > edgeTolerance;
    }

    /// The steepest line that the right of this edge limits.
    [[nodiscard]] const Line &steepest(Side side) const { return m_steepest[side]; }

private:
    void limit(Side side, const EdgePoint &point)
    {
        Line &line = m_steepest[side];
        const bool isFirst = std::isinf(line.slope);
        if (isFirst || outwards(side) * (line.at(point.position.x()) - point.position.y()) > 0.0)
            line = {point, m_hulls[opposite(side)].tangentSlope(point.position)};
    }

    std::array<Hull, 2> m_hulls{Hull(Lower), Hull(Upper)};
    std::array<Line, 2> m_steepest{Line{{}, -infinity}, Line{{}, infinity}};
};

/// The fewest links through the strip. The last one ends at the strip's end.
QList<Link> linksThrough(const Strip &strip)
{
    QList<Link> links;
    LinesThroughStrip lines;
    lines.append(strip.vertex(Lower, 0), strip.vertex(Upper, 0));
    for (qsizetype index = 1; index <= strip.last(); ++index) {
        for (const Side side : {Lower, Upper}) {
            if (!lines.allPassBeyond(side, strip.vertex(side, index).position))
                continue;
            // The line that reaches furthest right. The next line starts on it, between the last point where
            // it touches one edge and the point where it leaves through the other.
            const Line line = lines.steepest(opposite(side));
            const EdgePoint exit = strip.exit(line, side, index);
            links.append({line, exit.position.x()});
            lines = {};
            lines.append(opposite(side), line.touch);
            for (qsizetype passed = line.touch.next; passed < index; ++passed)
                lines.append(opposite(side), strip.vertex(opposite(side), passed));
            const bool isBetween = exit.position.x() > line.touch.position.x() &&
                                   exit.position.x() < strip.vertex(side, index).position.x();
            if (isBetween) // not moved by rounding
                lines.append(side, exit);
            break;
        }
        lines.append(strip.vertex(Lower, index), strip.vertex(Upper, index));
    }
    const double down = lines.steepest(Lower).slope;
    const double up = lines.steepest(Upper).slope;
    const double middle = std::isinf(down) ? up : std::isinf(up) ? down : (down + up) / 2.0;
    const EdgePoint end = strip.vertex(Upper, strip.last());
    links.append({{end, middle}, end.position.x()});
    return links;
}

double crossing(const Link &link, const Line &next)
{
    if (link.line.slope == next.slope)
        return link.exit;
    const double begin = link.line.touch.position.x();
    const double x = begin + (next.at(begin) - link.line.touch.position.y()) / (link.line.slope - next.slope);
    return std::isnan(x) ? link.exit : std::clamp(x, std::min(begin, link.exit), link.exit);
}

/// Returns the polyline of the links. Its points are in the strip of @a maxError around @a exact.
QList<QPointF> pointsOf(const QList<Link> &links, const QList<QPointF> &exact, double maxError)
{
    const QPointF first = exact.constFirst();
    const QPointF last = exact.constLast();
    const double length = last.x() - first.x();
    QList<QPointF> points{first};
    auto right = exact.begin() + 1;
    for (qsizetype index = 1; index < links.size(); ++index) {
        const Link &link = links.at(index - 1);
        const Line &next = links.at(index).line;
        const double x = first.x() + crossing(link, next) * length;
        if (x <= points.constLast().x() || x >= last.x())
            continue;
        // Where the strip is steep, rounding of x matters least on the flatter line.
        const Line &flatter = std::abs(link.line.slope) < std::abs(next.slope) ? link.line : next;
        const double y = first.y() + flatter.at((x - first.x()) / length) * maxError;
        right = std::lower_bound(right, exact.end(), x,
                                 [](const QPointF &point, double limit) { return point.x() < limit; });
        const double centre = interpolated(*(right - 1), *right, x);
        points.append({x, std::clamp(y, centre - maxError, centre + maxError)});
    }
    points.append(last);
    return points;
}

/// Adds points of @a exact where the lines between @a points are further than @a maxError from it: where it
/// is so steep that the lines depend on the rounding of x.
QList<QPointF> withinMaxError(const QList<QPointF> &points, const QList<QPointF> &exact, double maxError)
{
    QList<QPointF> checked{points.constFirst()};
    auto begin = exact.begin();
    for (const QPointF &end : points.sliced(1)) {
        QList<QPointF> pending{end};
        while (!pending.isEmpty()) {
            const QPointF from = checked.constLast();
            const QPointF to = pending.constLast();
            while (begin->x() <= from.x())
                ++begin;
            double largest = maxError;
            const QPointF *furthest = nullptr;
            for (auto point = begin; point->x() < to.x(); ++point) {
                const double error = std::abs(interpolated(from, to, point->x()) - point->y());
                if (error > largest) {
                    largest = error;
                    furthest = &*point;
                }
            }
            if (furthest != nullptr) {
                pending.append(*furthest);
            } else {
                checked.append(to);
                pending.removeLast();
            }
        }
    }
    return checked;
}

} // namespace

QList<QPointF> simplifiedTable(const QList<QPointF> &exact, double maxError)
{
    if (exact.size() < 3 || !(maxError > 0.0))
        return exact;
    const QPointF first = exact.constFirst();
    const double length = exact.constLast().x() - first.x();
    QList<QPointF> centre;
    centre.reserve(exact.size());
    for (const QPointF &point : exact)
        centre.append({(point.x() - first.x()) / length, (point.y() - first.y()) / maxError});
    const QList<Link> links = linksThrough(Strip(centre));
    return withinMaxError(pointsOf(links, exact, maxError), exact, maxError * (1.0 + roundingMargin));
}
