#include "gaugepainter.h"

#include "gaugedata.h"
#include "sweep.h"

#include <QLineF>
#include <QPaintEngine>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr double centre = canvasSize / 2.0;
constexpr double dotDiameter = 6.0;
constexpr double labelBoxSide = 100.0;

/// No double has more decimals than this; what a larger precision would add is zeros without end.
constexpr int mostDecimals = 1074;

/// A direction from the centre: a mathematical angle in degrees.
class Direction
{
public:
    explicit Direction(double angle)
        : m_cosine(std::cos(radians(angle)))
        , m_sine(std::sin(radians(angle)))
    {
    }

    /// The point at @a radius canvas units from the centre.
    [[nodiscard]] QPointF pointAt(double radius) const
    {
        return {centre + radius * m_cosine, centre - radius * m_sine};
    }

private:
    static double radians(double degrees) { return degrees * 3.141592653589793 / 180.0; }

    double m_cosine;
    double m_sine;
};

/// How far out lines and arcs are handed to Qt.
///
/// The raster engine walks the outline of a wide line row by row however far outside the picture it runs: a
/// radius of ten thousands, which only a damaged file holds, would take it seconds for each line. There,
/// radii and widths end where nothing of what lies beyond can be seen. Division lines stay on their rays, so
/// that what is inside the picture is the same. Other engines get every number as it stands.
class Reach
{
public:
    explicit Reach(const QPainter &painter)
        : m_limited(painter.isActive() && painter.paintEngine()->type() == QPaintEngine::Raster)
    {
    }

    [[nodiscard]] double radius(double radius) const
    {
        return m_limited ? std::clamp(radius, -farthest, farthest) : radius;
    }
    [[nodiscard]] double width(double width) const { return m_limited ? std::min(width, widest) : width; }

private:
    /// Together they leave the picture empty where it should be, and cover it where it should be covered: the
    /// widest arc or line cap out at the farthest radius ends clear of the canvas.
    static constexpr double farthest = 10.0 * faceRadius;
    static constexpr double widest = 16.0 * faceRadius;

    bool m_limited;
};

/// Degrees in the sixteenths that QPainter takes: rounded, halves away from zero, and held within an int.
int sixteenths(double degrees)
{
    constexpr double least = std::numeric_limits<int>::min();
    constexpr double most = std::numeric_limits<int>::max();
    const double rounded = std::round(degrees * 16.0);
    return std::isnan(rounded) ? 0 : static_cast<int>(std::clamp(rounded, least, most));
}

QPen solidPen(const QColor &color, double width, Qt::PenCapStyle cap)
{
    return {QBrush(color), width, Qt::SolidLine, cap, Qt::RoundJoin};
}

Qt::PenCapStyle capStyle(bool rounded)
{
    return rounded ? Qt::RoundCap : Qt::FlatCap;
}

void paintCentreDot(QPainter &painter)
{
    constexpr double corner = centre - dotDiameter / 2.0;
    painter.setBrush(QBrush(Qt::white, Qt::SolidPattern));
    painter.drawEllipse(QRectF(corner, corner, dotDiameter, dotDiameter));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
}

void paintArcs(QPainter &painter, const gaugeData &layer, const Reach &reach)
{
    const Qt::PenCapStyle cap = capStyle(layer.roundedArcCaps);
    for (size_t arc = 0; arc < layer.arcRadius.size(); ++arc) {
        if (layer.arcAngleLength[arc] == 0.0)
            continue;
        const double radius = reach.radius(faceRadius * layer.arcRadius[arc]);
        painter.setPen(solidPen(layer.arcColor[arc], reach.width(layer.arcWidth[arc]), cap));
        painter.drawArc(QRectF(centre - radius, centre - radius, 2.0 * radius, 2.0 * radius),
                        sixteenths(90.0 - layer.arcStartAngle[arc]), sixteenths(-layer.arcAngleLength[arc]));
    }
}

/// One ring of division lines, its pen made once for the whole layer.
struct Ring
{
    Ring(const gaugeData &layer, size_t index, Qt::PenCapStyle cap, const Reach &reach)
        : pen(solidPen(layer.divisionColor[index], reach.width(layer.divisionLineWidth[index]), cap))
        , outerRadius(reach.radius(faceRadius * layer.divisionOuterRadius[index]))
        , innerRadius(reach.radius(faceRadius * layer.divisionInnerRadius[index]))
    {
    }

    void paintTick(QPainter &painter, double angle) const
    {
        const Direction direction(angle);
        const QLineF line(direction.pointAt(outerRadius), direction.pointAt(innerRadius));
        painter.setPen(pen);
        painter.drawLines(&line, 1);
    }

    QPen pen;
    double outerRadius;
    double innerRadius;
};

bool nearlyEqual(const QTransform &a, const QTransform &b)
{
    const auto close = [](double x, double y) { return std::abs(x - y) <= 1e-6; };
    return close(a.m11(), b.m11()) && close(a.m12(), b.m12()) && close(a.m21(), b.m21()) &&
           close(a.m22(), b.m22()) && close(a.dx(), b.dx()) && close(a.dy(), b.dy());
}

void paintLabel(QPainter &painter, const gaugeData &layer, const QPen &pen, double angle, double value)
{
    constexpr double half = labelBoxSide / 2.0;
    const QPointF anchor = Direction(angle).pointAt(faceRadius * layer.tickCountRadius);
    const QString text = QString::number(value, 'f', std::min(layer.tickCountDecimalPlaces, mostDecimals));
    painter.setFont(layer.tickCountFont);
    painter.setPen(pen);

    if (!layer.tickCountRotate) {
        painter.drawText(QRectF(anchor.x() - half, anchor.y() - half, labelBoxSide, labelBoxSide),
                         Qt::AlignCenter, text);
        return;
    }

    const QTransform upright = painter.worldTransform();
    painter.translate(anchor);
    painter.rotate(90.0 - angle);
    painter.drawText(QRectF(-half, -half, labelBoxSide, labelBoxSide), Qt::AlignCenter, text);
    painter.rotate(-(90.0 - angle));
    painter.translate(-anchor);
    // An anchor that is no finite point, or is astronomically far off, cannot be undone by going back; the
    // ticks and layers that follow must not suffer for it.
    if (!nearlyEqual(upright, painter.worldTransform()))
        painter.setWorldTransform(upright);
}

void paintDivisions(QPainter &painter, const gaugeData &layer, const Reach &reach)
{
    const Qt::PenCapStyle cap = capStyle(layer.roundedTickCaps);
    const Ring primary(layer, 0, cap, reach);
    const Ring secondary(layer, 1, cap, reach);
    const Ring tertiary(layer, 2, cap, reach);
    const QPen labelPen = solidPen(layer.tickCountColor, 0.0, cap);
    const int primaries = layer.divisionCount[0];
    const int secondaries = layer.divisionCount[1];
    const int tertiaries = layer.divisionCount[2];
    const auto fractionAt = [primaries](double position) { return divisionFraction(position, primaries); };

    const qint64 ticks = primaryTickCount(layer);
    // Added up tick by tick, as a user adds: an increment that has no exact double drifts alike in the dial
    // and in the keyframe table.
    double labelValue = layer.tickCountStart;
    for (qint64 i = 0; i < ticks; ++i, labelValue += layer.tickCountIncrement) {
        const auto position = static_cast<double>(i);
        const double angle = tickAngle(layer, fractionAt(position));
        primary.paintTick(painter, angle);
        if (layer.tickCountEnabled && !(i == 0 && layer.tickCountSkipFirst))
            paintLabel(painter, layer, labelPen, angle, labelValue);

        const bool closingTick = i >= primaries;
        if (secondaries <= 1 || closingTick)
            continue;
        for (int j = 0; j < secondaries; ++j) {
            const auto step = static_cast<double>(j);
            if (j != 0)
                secondary.paintTick(painter, tickAngle(layer, fractionAt(step / secondaries + position)));
            for (int k = 1; k < tertiaries; ++k) {
                const double subStep = (static_cast<double>(k) / tertiaries + step) / secondaries;
                tertiary.paintTick(painter, tickAngle(layer, fractionAt(subStep + position)));
            }
        }
    }
}

} // namespace

void paintGauge(QPainter &painter, int size, const QList<gaugeData> &layers)
{
    constexpr double sizePerUnit = 1.0 / canvasSize;
    painter.setPen(solidPen(Qt::white, 0.0, Qt::FlatCap));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size * sizePerUnit, size * sizePerUnit);
    paintCentreDot(painter);

    const Reach reach(painter);
    for (const gaugeData &layer : layers) {
        paintArcs(painter, layer, reach);
        paintDivisions(painter, layer, reach);
    }
}
