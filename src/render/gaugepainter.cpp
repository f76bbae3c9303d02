#include "render/gaugepainter.h"

#include "model/gaugedata.h"
#include "render/labels.h"
#include "render/rasterlimits.h"
#include "render/sweep.h"

#include <QFontMetricsF>
#include <QLineF>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double canvasCentre = canvasSize / 2.0;
constexpr double dotDiameter = 6.0;
constexpr double labelBoxSide = 100.0;

/// A direction from the centre, given in degrees counter-clockwise from 3 o'clock.
class Direction
{
public:
    explicit Direction(double angle)
        : m_cosine(std::cos(radians(angle)))
        , m_sine(std::sin(radians(angle)))
    {
    }

    /// Returns the point at @a radius canvas units from the centre.
    [[nodiscard]] QPointF pointAt(double radius) const
    {
        return {canvasCentre + radius * m_cosine, canvasCentre - radius * m_sine};
    }

private:
    static double radians(double degrees) { return degrees * 3.141592653589793 / 180.0; }

    double m_cosine;
    double m_sine;
};

/// Converts degrees to the sixteenths of a degree that QPainter::drawArc() takes: rounded, halves away from
/// zero, and limited to the range of int. NaN gives 0.
int sixteenths(double degrees)
{
    constexpr double min = std::numeric_limits<int>::min();
    constexpr double max = std::numeric_limits<int>::max();
    const double rounded = std::round(degrees * 16.0);
    return std::isnan(rounded) ? 0 : static_cast<int>(std::clamp(rounded, min, max));
}

QPen solidPen(const QColor &color, double width, Qt::PenCapStyle cap)
{
    return {QBrush(color), width, Qt::SolidLine, cap, Qt::RoundJoin};
}

/// Where and how to draw: the arguments that all drawing functions share.
struct Canvas
{
    QPainter &painter;
    const PaintStyle &style;
    RasterLimits limits;

    [[nodiscard]] QPen pen(const QColor &color, double width, Qt::PenCapStyle cap) const
    {
        return solidPen(color, width == 0.0 ? style.hairline : width, cap);
    }
};

Qt::PenCapStyle capStyle(bool rounded)
{
    return rounded ? Qt::RoundCap : Qt::FlatCap;
}

void paintCentreDot(QPainter &painter)
{
    constexpr double corner = canvasCentre - dotDiameter / 2.0;
    painter.setBrush(QBrush(Qt::white, Qt::SolidPattern));
    painter.drawEllipse(QRectF(corner, corner, dotDiameter, dotDiameter));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
}

void paintArcs(const Canvas &canvas, const gaugeData &layer)
{
    const Qt::PenCapStyle cap = capStyle(layer.roundedArcCaps);
    for (size_t arc = 0; arc < layer.arcRadius.size(); ++arc) {
        if (layer.arcAngleLength[arc] == 0.0)
            continue;
        const auto [radius, width] =
            canvas.limits.arc(faceRadius * layer.arcRadius[arc], layer.arcWidth[arc]);
        canvas.painter.setPen(canvas.pen(layer.arcColor[arc], width, cap));
        canvas.painter.drawArc(
            QRectF(canvasCentre - radius, canvasCentre - radius, 2.0 * radius, 2.0 * radius),
            sixteenths(90.0 - layer.arcStartAngle[arc]), sixteenths(-layer.arcAngleLength[arc]));
    }
}

/// Pen and radii of one ring of division lines.
struct Ring
{
    Ring(const Canvas &canvas, const gaugeData &layer, size_t index, Qt::PenCapStyle cap)
        : pen(canvas.pen(layer.divisionColor[index], canvas.limits.width(layer.divisionLineWidth[index]),
                         cap))
        , outerRadius(canvas.limits.radius(faceRadius * layer.divisionOuterRadius[index]))
        , innerRadius(canvas.limits.radius(faceRadius * layer.divisionInnerRadius[index]))
    {
    }

    /// Precondition: the painter's pen is `pen`. Setting it once for many ticks is faster.
    void paintTick(QPainter &painter, double angle) const
    {
        const Direction direction(angle);
        const QLineF line(direction.pointAt(outerRadius), direction.pointAt(innerRadius));
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

/// Draws @a text centred in @a box with the painter's font and pen colour.
void paintLabelText(QPainter &painter, const QRectF &box, const QString &text, const PaintStyle &style)
{
    if (!style.textAsPaths) {
        painter.drawText(box, Qt::AlignCenter, text);
        return;
    }
    QFont font(painter.font(), painter.device());
    // Hinting adjusts the glyphs to whole pixels of the canvas, which is wrong at every other size.
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font, painter.device());
    QPainterPath path;
    path.addText(box.center().x() - metrics.horizontalAdvance(text) / 2.0,
                 box.center().y() + (metrics.ascent() - metrics.descent()) / 2.0, font, text);
    painter.fillPath(path, painter.pen().brush());
}

void paintLabel(const Canvas &canvas, const gaugeData &layer, const QFont &font, const QPen &pen,
                double angle, double value)
{
    QPainter &painter = canvas.painter;
    constexpr double half = labelBoxSide / 2.0;
    const QPointF anchor = Direction(angle).pointAt(faceRadius * layer.tickCountRadius);
    const QString text = labelText(layer, value);
    painter.setFont(font);
    painter.setPen(pen);

    if (!layer.tickCountRotate) {
        paintLabelText(painter, QRectF(anchor.x() - half, anchor.y() - half, labelBoxSide, labelBoxSide),
                       text, canvas.style);
        return;
    }

    const QTransform upright = painter.worldTransform();
    painter.translate(anchor);
    painter.rotate(90.0 - angle);
    paintLabelText(painter, QRectF(-half, -half, labelBoxSide, labelBoxSide), text, canvas.style);
    painter.rotate(-(90.0 - angle));
    painter.translate(-anchor);
    // The calls above do not undo a translation to a point that is not finite or extremely far away.
    if (!nearlyEqual(upright, painter.worldTransform()))
        painter.setWorldTransform(upright);
}

/// Draws the secondary and tertiary ticks between the primary tick at @a position and the next one.
void paintGap(QPainter &painter, const gaugeData &layer, double position, const Ring &secondary,
              const Ring &tertiary)
{
    const auto [primaries, secondaries, tertiaries] = layer.divisionCount;
    for (int j = 0; j < secondaries; ++j) {
        const auto step = static_cast<double>(j);
        if (j != 0) {
            const double fraction = divisionFraction(step / secondaries + position, primaries);
            painter.setPen(secondary.pen);
            secondary.paintTick(painter, tickAngle(layer, fraction));
        }
        if (tertiaries > 1)
            painter.setPen(tertiary.pen);
        for (int k = 1; k < tertiaries; ++k) {
            const double subStep = (static_cast<double>(k) / tertiaries + step) / secondaries;
            tertiary.paintTick(painter, tickAngle(layer, divisionFraction(subStep + position, primaries)));
        }
    }
}

void paintDivisions(const Canvas &canvas, const gaugeData &layer)
{
    const Qt::PenCapStyle cap = capStyle(layer.roundedTickCaps);
    const Ring primary(canvas, layer, 0, cap);
    const Ring secondary(canvas, layer, 1, cap);
    const Ring tertiary(canvas, layer, 2, cap);
    const QFont font = labelFont(layer);
    const QPen labelPen = solidPen(layer.tickCountColor, 0.0, cap);

    const int divisions = layer.divisionCount[0];
    const bool dividesGaps = layer.divisionCount[1] > 1;
    const qint64 ticks = primaryTickCount(layer);
    // Repeated addition, as in keyframes(), so that both show the same rounding errors.
    double labelValue = layer.tickCountStart;
    for (qint64 i = 0; i < ticks; ++i) {
        const auto position = static_cast<double>(i);
        const double angle = tickAngle(layer, divisionFraction(position, divisions));
        canvas.painter.setPen(primary.pen);
        primary.paintTick(canvas.painter, angle);
        if (layer.tickCountEnabled && !(i == 0 && layer.tickCountSkipFirst))
            paintLabel(canvas, layer, font, labelPen, angle, labelValue);
        const bool closingTick = i >= divisions;
        if (dividesGaps && !closingTick)
            paintGap(canvas.painter, layer, position, secondary, tertiary);
        labelValue += layer.tickCountIncrement;
    }
}

} // namespace

void paintGauge(QPainter &painter, int size, const QList<gaugeData> &layers, const PaintStyle &style)
{
    const Canvas canvas{painter, style, RasterLimits(painter)};
    constexpr double sizePerUnit = 1.0 / canvasSize;
    painter.setPen(canvas.pen(Qt::white, 0.0, Qt::FlatCap));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size * sizePerUnit, size * sizePerUnit);
    if (style.rotation != 0.0) {
        painter.translate(canvasCentre, canvasCentre);
        painter.rotate(style.rotation);
        painter.translate(-canvasCentre, -canvasCentre);
    }
    if (style.centreDot)
        paintCentreDot(painter);

    for (const gaugeData &layer : layers) {
        paintArcs(canvas, layer);
        paintDivisions(canvas, layer);
    }
}
