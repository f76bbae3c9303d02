#include "fit/scalecurve.h"

// Declares ::isnan(), which pchip.hpp of Boost 1.74 uses without including it.
#include <math.h> // NOLINT(modernize-deprecated-headers)

#include <boost/math/interpolators/pchip.hpp>

#include <algorithm>
#include <limits>
#include <vector>

namespace {

/// The part of the range by which a value may be outside and still count as its end.
constexpr double rangeTolerance = 1e-9;

/// Returns the angle at @a value on the line through @a a and @a b.
double onLine(const QPointF &a, const QPointF &b, double value)
{
    return a.y() + (b.y() - a.y()) * ((value - a.x()) / (b.x() - a.x()));
}

/// Returns the function that joins @a points by straight lines.
std::function<double(double)> straightLines(const QList<QPointF> &points)
{
    return [points](double value) {
        // The first point after the value, but neither the first nor beyond the last point.
        const auto next = std::upper_bound(points.cbegin() + 1, points.cend() - 1, value,
                                           [](double x, const QPointF &point) { return x < point.x(); });
        return onLine(*(next - 1), *next, value);
    };
}

/// Returns the monotone cubic function through @a points.
std::function<double(double)> monotoneCubic(const QList<QPointF> &points)
{
    // Boost divides squares of distances by differences of angles. Where the angle jumps, the result would be
    // too small for a double. All values are multiplied by a power of two, which is exact.
    constexpr double factor = 0x1p300;
    std::vector<double> values;
    std::vector<double> angles;
    const auto append = [&values, &angles](double value, double angle) {
        values.push_back(factor * value);
        angles.push_back(angle);
    };
    // One more point at each end, on the line through the last two, does not change the curve between the
    // points. Boost needs at least four points, and the caller may have only two. The new point is at
    // twice the distance of the last two: at the same distance, it could be rounded to the last point.
    const QPointF first = points.first() + 2.0 * (points.first() - points.at(1));
    const QPointF last = points.last() + 2.0 * (points.last() - points.at(points.size() - 2));
    append(first.x(), first.y());
    for (const QPointF &point : points)
        append(point.x(), point.y());
    append(last.x(), last.y());
    const boost::math::interpolators::pchip<std::vector<double>> curve(std::move(values), std::move(angles));
    return [curve](double value) { return curve(factor * value); };
}

} // namespace

ScaleCurve::ScaleCurve(const QList<QPointF> &points, Kind kind, bool extrapolate)
    : m_points(points)
    , m_inner(kind == Kind::Smooth ? monotoneCubic(points) : straightLines(points))
    , m_extrapolate(extrapolate)
{
}

double ScaleCurve::angle(double value) const
{
    if (value >= minValue() && value <= maxValue())
        return m_inner(value);
    const bool below = value < minValue();
    if (m_extrapolate) {
        return below ? onLine(m_points.first(), m_points.at(1), value)
                     : onLine(m_points.last(), m_points.at(m_points.size() - 2), value);
    }
    const double outside = below ? minValue() - value : value - maxValue();
    if (outside <= rangeTolerance * (maxValue() - minValue()))
        return below ? m_points.first().y() : m_points.last().y();
    return std::numeric_limits<double>::quiet_NaN();
}
