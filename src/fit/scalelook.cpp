#include "fit/scalelook.h"

#include "fit/fitoptions.h"
#include "fit/scalecurve.h"
#include "render/gaugepainter.h"
#include "tools/gaugeinput.h"

#include <QFileInfo>

#include <algorithm>
#include <cmath>

namespace {

constexpr double defaultRangeWidth = 8.0;

bool showsLabels(const gaugeLayer &layer)
{
    return layer.data.tickCountEnabled && layer.data.divisionCount[0] > 0;
}

/// The first of the layers that shows labels, or the first one.
const gaugeData &firstScale(const QList<gaugeLayer> &layers)
{
    const auto found = std::ranges::find_if(layers, showsLabels);
    return found == layers.cend() ? layers.constFirst().data : found->data;
}

/// Reads the look from FILE or FILE:LAYER. Returns the reason for a failure, without the file.
QString readStyle(const QString &style, gaugeData &look)
{
    const QString file = styleFile(style);
    const QString layer = style.sliced(file.size()).sliced(file == style ? 0 : 1);
    QList<gaugeLayer> layers;
    QString reason = readGaugeFile(file, defaultMaxGaugeSize, layers);
    if (!reason.isEmpty())
        return reason;
    look = firstScale(layers);
    if (!layer.isEmpty()) {
        QList<qsizetype> rows;
        reason = selectLayers(layer, layers, rows);
        if (!reason.isEmpty())
            return reason;
        look = layers.at(rows.constFirst()).data;
    }
    look.arcAngleLength = {};
    return {};
}

void copyArcs(const gaugeData &from, gaugeData &to)
{
    to.roundedArcCaps = from.roundedArcCaps;
    to.arcStartAngle = from.arcStartAngle;
    to.arcAngleLength = from.arcAngleLength;
    to.arcRadius = from.arcRadius;
    to.arcWidth = from.arcWidth;
    to.arcColor = from.arcColor;
}

/// Takes the layers to replace out of the gauge. Returns the reason for a failure.
QString takeLayers(const QString &wanted, ScalePlace &place)
{
    QList<qsizetype> rows;
    QString reason = selectLayers(wanted, place.layers, rows);
    if (!reason.isEmpty())
        return reason;
    std::ranges::sort(rows);

    QList<gaugeLayer> kept;
    QList<gaugeLayer> replaced;
    for (qsizetype row = 0; row < place.layers.size(); ++row) {
        const bool isReplaced = std::binary_search(rows.cbegin(), rows.cend(), row);
        (isReplaced ? replaced : kept).append(place.layers.at(row));
    }
    place.layers = kept;
    place.row = rows.constFirst();

    // Circles are a disc or a rim, and stay. Other arcs mark values, which have another place now.
    const gaugeData &bottom = replaced.constFirst().data;
    place.look = firstScale(replaced);
    copyArcs(bottom, place.look);
    for (double &length : place.look.arcAngleLength)
        length = std::abs(length) >= 360.0 ? length : 0.0;
    return {};
}

gaugeLayer emptyLayer(const QString &name)
{
    gaugeLayer layer{name, {}};
    layer.data.divisionCount = {0, 1, 1};
    layer.data.tickCountEnabled = false;
    layer.data.arcAngleLength = {};
    layer.data.tickCountFont.setFamily(plainLook().tickCountFont.family());
    return layer;
}

/// Rounded to the precision of the editor's form.
double formAngle(double degrees)
{
    return std::round(degrees * 100.0) / 100.0;
}

} // namespace

gaugeData plainLook()
{
    const QColor ink(0x20, 0x20, 0x20);
    const QColor paper(0xfa, 0xfa, 0xf5);
    gaugeData look;
    // The form limits the width of arcs, so that a disc takes three.
    look.arcStartAngle = {};
    look.arcAngleLength = {360.0, 360.0, 360.0, 360.0};
    look.arcRadius = {0.2, 0.5, 0.78, 0.98};
    look.arcWidth = {100.0, 100.0, 100.0, 4.0};
    look.arcColor = {paper, paper, paper, ink};
    look.divisionInnerRadius = {0.82, 0.86, 0.89};
    look.divisionOuterRadius = {0.93, 0.93, 0.93};
    look.divisionLineWidth = {3.0, 2.0, 1.0};
    look.divisionColor = {ink, ink, ink};
    look.tickCountRadius = 0.72;
    look.tickCountFont = QFont(QStringLiteral("DejaVu Sans"), 14);
    look.tickCountColor = ink;
    return look;
}

QString styleFile(const QString &style)
{
    const qsizetype colon = style.lastIndexOf(u':');
    return colon > 0 && !QFileInfo::exists(style) ? style.first(colon) : style;
}

ScalePlace readScalePlace(const FitOptions &options)
{
    ScalePlace place;
    place.look = plainLook();
    if (!options.into.isEmpty()) {
        QString reason = readGaugeFile(options.into, defaultMaxGaugeSize, place.layers);
        if (reason.isEmpty())
            reason = takeLayers(options.replace, place);
        if (!reason.isEmpty())
            place.failure = options.into + QLatin1String(": ") + reason;
    }
    if (place.failure.isEmpty() && !options.style.isEmpty()) {
        const gaugeData circles = place.look;
        const QString reason = readStyle(options.style, place.look);
        if (!reason.isEmpty())
            place.failure = styleFile(options.style) + QLatin1String(": ") + reason;
        if (!options.into.isEmpty())
            copyArcs(circles, place.look);
    }
    return place;
}

QList<gaugeLayer> withRanges(QList<gaugeLayer> scale, const FitOptions &options, const ScaleCurve &curve,
                             QString &failure)
{
    if (options.ranges.isEmpty() || scale.isEmpty())
        return scale;
    QList<gaugeLayer> below;
    gaugeData &first = scale.first().data;
    if (first.arcAngleLength != decltype(first.arcAngleLength){}) {
        gaugeLayer face = emptyLayer(QStringLiteral("Face"));
        copyArcs(first, face.data);
        first.arcAngleLength = {};
        below.append(face);
    }
    const double width = options.rangeWidth.value_or(defaultRangeWidth);
    const double radius =
        options.rangeRadius.value_or(first.divisionOuterRadius[0] - width / 2.0 / faceRadius);
    size_t arc = first.arcAngleLength.size();
    for (const ValueRange &range : options.ranges) {
        const double from = curve.angle(range.from);
        const double to = curve.angle(range.to);
        if (!std::isfinite(from) || !std::isfinite(to)) {
            failure = QStringLiteral("the range from %1 to %2 goes beyond the points, which go from %3 to %4 "
                                     "(--extrapolate allows this)")
                          .arg(range.from)
                          .arg(range.to)
                          .arg(curve.minValue())
                          .arg(curve.maxValue());
            return {};
        }
        if (arc == first.arcAngleLength.size()) {
            below.append(emptyLayer(QStringLiteral("Ranges")));
            arc = 0;
        }
        gaugeData &arcs = below.last().data;
        arcs.arcStartAngle[arc] = formAngle(std::remainder(std::min(from, to), 360.0));
        arcs.arcAngleLength[arc] = formAngle(std::min(std::abs(to - from), 360.0));
        arcs.arcRadius[arc] = radius;
        arcs.arcWidth[arc] = width;
        arcs.arcColor[arc] = range.color;
        ++arc;
    }
    return below + scale;
}
