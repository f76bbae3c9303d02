#ifndef SCALECURVE_H
#define SCALECURVE_H

#include <QList>
#include <QPointF>

#include <functional>

/// The angle of a needle as a function of the value it shows: a curve through measured points.
///
/// Angles are in degrees clockwise from 12 o'clock and may exceed one turn.
class ScaleCurve
{
public:
    enum class Kind {
        Smooth,  ///< Monotone cubic pieces that do not overshoot, with straight ends (Fritsch and Butland,
                 ///< 1984).
        Straight ///< Straight lines, as simulators draw them between points.
    };

    /// Precondition: at least two @a points, whose values (x) are finite and ascend, and whose angles (y) are
    /// finite and never turn back. They may rise, fall and stay the same.
    explicit ScaleCurve(const QList<QPointF> &points, Kind kind = Kind::Smooth, bool extrapolate = false);

    /// Returns the angle of @a value. Beyond the first and the last point it continues along the line through
    /// the last two points at that end, if the curve extrapolates; otherwise it returns NaN. A value that is
    /// outside by a rounding error has the angle of the end.
    [[nodiscard]] double angle(double value) const;

    [[nodiscard]] double minValue() const { return m_points.first().x(); }
    [[nodiscard]] double maxValue() const { return m_points.last().x(); }
    /// Returns the points that the curve goes through.
    [[nodiscard]] const QList<QPointF> &points() const { return m_points; }

private:
    QList<QPointF> m_points;
    std::function<double(double)> m_inner; ///< from the first point to the last
    bool m_extrapolate;
};

#endif
