#include "render/gaugepainter.h"

#include "model/gaugedata.h"
#include "render/sweep.h"

#include <QFontMetricsF>
#include <QLineF>
#include <QPaintEngine>
#include <QPainter>
#include <QPainterPath>
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

/// No picture shows what a larger font would change; Qt counts its pixels in an int, and never comes to an
/// end with a rotated label when that overflows.
constexpr double largestPointSize = 1e6;

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
/// lines and arcs end where nothing of what lies beyond can be seen. Division lines stay on their rays and
/// arcs keep the edge that the picture shows, so that what is inside the picture is the same. Other engines
/// get every number as it stands.
class Reach
{
public:
    explicit Reach(const QPainter &painter)
        : m_limited(painter.isActive() && painter.paintEngine()->type() == QPaintEngine::Raster)
    {
    }

    /// The distance of a line's end from the centre.
    [[nodiscard]] double radius(double radius) const
    {
        return m_limited ? std::clamp(radius, -farthest, farthest) : radius;
    }

    /// A line's width. The widest cap out at the farthest radius still ends clear of the canvas.
    [[nodiscard]] double width(double width) const { return m_limited ? std::min(width, widest) : width; }

    struct Band
    {
        double radius;
        double width;
    };
    /// The radius of an arc and its width, which go together: the band between its edges is cut off, not
    /// moved. Too wide an arc has its inner edge beyond the centre.
    [[nodiscard]] Band arc(double radius, double width) const
    {
        const double distance = std::abs(radius);
        if (!m_limited || !(distance > farthest || width > widest))
            return {radius, width};
        const double inner = std::clamp(distance - width / 2.0, -canvasSide, canvasSide);
        const double outer = std::clamp(distance + width / 2.0, -canvasSide, farthest);
        return {(inner + outer) / 2.0, outer - inner};
    }

private:
    static constexpr double farthest = 10.0 * faceRadius;
    static constexpr double widest = 16.0 * faceRadius;
    /// Clear of the canvas, whose corners lie less than this from the centre.
    static constexpr double canvasSide = canvasSize;

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

/// What every step of a drawing needs to know of where it draws.
struct Canvas
{
    QPainter &painter;
    const PaintStyle &style;
    Reach reach;

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
    constexpr double corner = centre - dotDiameter / 2.0;
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
        const auto [radius, width] = canvas.reach.arc(faceRadius * layer.arcRadius[arc], layer.arcWidth[arc]);
        canvas.painter.setPen(canvas.pen(layer.arcColor[arc], width, cap));
        canvas.painter.drawArc(QRectF(centre - radius, centre - radius, 2.0 * radius, 2.0 * radius),
                               sixteenths(90.0 - layer.arcStartAngle[arc]),
                               sixteenths(-layer.arcAngleLength[arc]));
    }
}

/// One ring of division lines, its pen made once for the whole layer.
struct Ring
{
    Ring(const Canvas &canvas, const gaugeData &layer, size_t index, Qt::PenCapStyle cap)
        : pen(canvas.pen(layer.divisionColor[index], canvas.reach.width(layer.divisionLineWidth[index]), cap))
        , outerRadius(canvas.reach.radius(faceRadius * layer.divisionOuterRadius[index]))
        , innerRadius(canvas.reach.radius(faceRadius * layer.divisionInnerRadius[index]))
    {
    }

    /// In the painter's pen, which is to be this ring's: ticks in a row take it once.
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

/// The font of a layer's labels, held to a size that can be painted.
QFont labelFont(const gaugeData &layer)
{
    QFont font = layer.tickCountFont;
    const double size = font.pointSizeF();
    if (size > largestPointSize || std::isnan(size))
        font.setPointSizeF(largestPointSize);
    return font;
}

/// A label in the middle of its box, in the painter's font and the colour of its pen.
void paintLabelText(QPainter &painter, const QRectF &box, const QString &text, const PaintStyle &style)
{
    if (!style.textAsPaths) {
        painter.drawText(box, Qt::AlignCenter, text);
        return;
    }
    QFont font(painter.font(), painter.device());
    // Fitted to the pixels of the canvas the shapes would be wrong at every other size.
    font.setHintingPreference(QFont::PreferNoHinting);
    const QFontMetricsF metrics(font, painter.device());
    QPainterPath outlines;
    outlines.addText(box.center().x() - metrics.horizontalAdvance(text) / 2.0,
                     box.center().y() + (metrics.ascent() - metrics.descent()) / 2.0, font, text);
    painter.fillPath(outlines, painter.pen().brush());
}

void paintLabel(const Canvas &canvas, const gaugeData &layer, const QFont &font, const QPen &pen,
                double angle, double value)
{
    QPainter &painter = canvas.painter;
    constexpr double half = labelBoxSide / 2.0;
    const QPointF anchor = Direction(angle).pointAt(faceRadius * layer.tickCountRadius);
    const QString text = QString::number(value, 'f', std::min(layer.tickCountDecimalPlaces, mostDecimals));
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
    // An anchor that is no finite point, or is astronomically far off, cannot be undone by going back; the
    // ticks and layers that follow must not suffer for it.
    if (!nearlyEqual(upright, painter.worldTransform()))
        painter.setWorldTransform(upright);
}

/// The secondary and tertiary ticks of the gap that follows the primary tick at @a position.
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
    // Added up tick by tick, as a user adds: an increment that has no exact double drifts alike in the dial
    // and in the keyframe table.
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
    const Canvas canvas{painter, style, Reach(painter)};
    constexpr double sizePerUnit = 1.0 / canvasSize;
    painter.setPen(canvas.pen(Qt::white, 0.0, Qt::FlatCap));
    painter.setBrush(QBrush(Qt::white, Qt::NoBrush));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size * sizePerUnit, size * sizePerUnit);
    paintCentreDot(painter);

    for (const gaugeData &layer : layers) {
        paintArcs(canvas, layer);
        paintDivisions(canvas, layer);
    }
}
