#include "render/labels.h"

#include "model/gaugedata.h"
#include "render/gaugepainter.h"
#include "render/keyframes.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPointF>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace {

/// Qt stores font sizes in pixels as an int. When that overflows, it draws rotated text in an endless loop.
constexpr double maxPointSize = 1e6;

} // namespace

QString labelText(const gaugeData &layer, double value)
{
    return QString::number(value, 'f', std::min(layer.tickCountDecimalPlaces, maxLabelDecimals));
}

QFont labelFont(const gaugeData &layer)
{
    QFont font = layer.tickCountFont;
    const double size = font.pointSizeF();
    if (size > maxPointSize || std::isnan(size))
        font.setPointSizeF(maxPointSize);
    return font;
}

QList<GaugeLabel> gaugeLabels(const gaugeData &layer)
{
    if (!layer.tickCountEnabled)
        return {};
    const QImage device(1, 1, QImage::Format_ARGB32); // has the density of every picture
    const QFontMetricsF metrics(labelFont(layer), &device);
    QList<GaugeLabel> labels;
    for (const QPointF &frame : keyframes(layer)) {
        GaugeLabel label{labelText(layer, frame.x()), {}};
        QRectF ink = metrics.tightBoundingRect(label.text);
        // The text is centred by its advance and by the height of its line.
        ink.translate(-metrics.horizontalAdvance(label.text) / 2.0,
                      (metrics.ascent() - metrics.descent()) / 2.0);
        QTransform place;
        place.translate(canvasSize / 2.0, canvasSize / 2.0);
        place.rotate(frame.y());
        place.translate(0.0, -faceRadius * layer.tickCountRadius);
        if (!layer.tickCountRotate)
            place.rotate(-frame.y());
        label.outline = place.map(QPolygonF(ink));
        labels.append(label);
    }
    if (layer.tickCountSkipFirst && !labels.isEmpty())
        labels.removeFirst();
    return labels;
}
