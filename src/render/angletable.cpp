#include "render/angletable.h"

#include "model/gaugedata.h"
#include "render/sweep.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

/// Limits time and memory for records with huge sweeps.
constexpr qsizetype maxSampleCount = 1 << 19;

/// A layer's scale by value.
class Scale
{
public:
    explicit Scale(const gaugeData &layer)
        : m_layer(layer)
        , m_start(layer.tickCountStart)
        , m_end(layer.tickCountStart + layer.divisionCount[0] * layer.tickCountIncrement)
    {
    }

    [[nodiscard]] double min() const { return std::min(m_start, m_end); }
    [[nodiscard]] double max() const { return std::max(m_start, m_end); }

    [[nodiscard]] double position(double value) const
    {
        if (value == m_end)
            return m_layer.divisionCount[0];
        return std::min<double>((value - m_start) / m_layer.tickCountIncrement, m_layer.divisionCount[0]);
    }

    [[nodiscard]] QPointF point(double value) const { return {value, scaleAngle(m_layer, position(value))}; }

    [[nodiscard]] bool isValid() const
    {
        return m_layer.divisionCount[0] >= 1 && std::isfinite(m_end - m_start) && m_start != m_end &&
               std::isfinite(m_layer.startAngle) && std::isfinite(m_layer.angleLength) &&
               std::isfinite(m_layer.bias) && std::isfinite(scaleAngle(m_layer, 0.0)) &&
               std::isfinite(scaleAngle(m_layer, m_layer.divisionCount[0]));
    }

private:
    gaugeData m_layer;
    double m_start;
    double m_end;
};

/// Returns points of the scale between which straight lines depart from it by at most @a tolerance, with
/// ascending values. Empty when there are too many.
QList<QPointF> samples(const Scale &scale, double tolerance)
{
    QList<QPointF> found{scale.point(scale.min())};
    QList<QPointF> pending{scale.point(scale.max())};
    const double minDistance = std::ldexp(scale.max() - scale.min(), -900);
    while (!pending.isEmpty()) {
        if (found.size() + pending.size() > maxSampleCount)
            return {};
        const QPointF left = found.constLast();
        const QPointF right = pending.constLast();
        const double value = left.x() + (right.x() - left.x()) / 2.0;
        const double position = scale.position(value);
        const bool canDivide = right.x() - left.x() > minDistance && value > left.x() && value < right.x() &&
                               position != scale.position(left.x()) && position != scale.position(right.x());
        if (canDivide) {
            const QPointF middle = scale.point(value);
            const double part = (value - left.x()) / (right.x() - left.x());
            const double departure = middle.y() - (left.y() + part * (right.y() - left.y()));
            // All bias curves, also where they are limited, are convex or concave. So the departure in the
            // middle is at least half of the maximum, and a quarter where the middle is rounded.
            if (4.0 * std::abs(departure) > tolerance) {
                pending.append(middle);
                continue;
            }
        }
        found.append(right);
        pending.removeLast();
    }
    return found;
}

} // namespace

double scaleAngle(const gaugeData &layer, double position)
{
    // Computed from the painter's angle, so that both have the same rounding errors.
    return 90.0 - tickAngle(layer, divisionFraction(position, layer.divisionCount[0]));
}

QList<QPointF> angleTablePoints(const gaugeData &layer, double maxError)
{
    return joinedTablePoints({layer}, maxError);
}

QList<QPointF> joinedTablePoints(const QList<gaugeData> &layers, double maxError)
{
    QList<Scale> scales;
    double largest = 0.0;
    for (const gaugeData &layer : layers) {
        scales.append(Scale(layer));
        if (!scales.constLast().isValid())
            return {};
        largest = std::max({largest, std::abs(layer.startAngle) + 90.0, std::abs(layer.angleLength)});
    }
    if (!(maxError > 0.0))
        return {};
    std::ranges::stable_sort(scales, {}, &Scale::min);
    const double precision = std::ldexp(largest, -46);
    const double tolerance = std::max(maxError / 1024.0, precision);
    QList<QPointF> exact;
    for (const Scale &scale : std::as_const(scales)) {
        const QList<QPointF> points = samples(scale, tolerance);
        if (points.isEmpty())
            return {};
        for (qsizetype index = 0; index < points.size(); ++index) {
            QPointF point = points.at(index);
            const bool isJump = index == 0 && !exact.isEmpty() && point.x() <= exact.constLast().x() &&
                                point.y() != exact.constLast().y();
            if (isJump)
                point.setX(std::nextafter(exact.constLast().x(), std::numeric_limits<double>::infinity()));
            if (exact.isEmpty() || point.x() > exact.constLast().x())
                exact.append(point);
        }
    }
    return simplifiedTable(exact, std::max(maxError - tolerance, precision));
}

QList<QPointF> scaleEnds(const gaugeData &layer)
{
    const Scale scale(layer);
    if (!scale.isValid())
        return {};
    return {scale.point(scale.min()), scale.point(scale.max())};
}
