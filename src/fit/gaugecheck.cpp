#include "fit/gaugecheck.h"

#include "fit/scalecurve.h"
#include "render/keyframes.h"

#include <cmath>

namespace {

/// Compares a mark with the curve's angle at @a value.
CheckedMark compare(const gaugeLayer &layer, const QPointF &frame, double value, const ScaleCurve &curve)
{
    CheckedMark mark{layer.name, frame.x(), frame.y(), curve.angle(value), 0.0};
    // Marks a whole turn apart are in the same place.
    mark.error = std::abs(std::remainder(mark.angle - mark.expected, 360.0));
    return mark;
}

} // namespace

QList<CheckedMark> checkMarks(const QList<gaugeLayer> &layers, const ScaleCurve &curve, bool withoutSign)
{
    QList<CheckedMark> marks;
    for (const gaugeLayer &layer : layers) {
        if (!layer.data.tickCountEnabled)
            continue;
        QList<QPointF> frames = keyframes(layer.data);
        if (layer.data.tickCountSkipFirst && !frames.isEmpty())
            frames.removeFirst();
        for (const QPointF &frame : std::as_const(frames)) {
            CheckedMark mark = compare(layer, frame, frame.x(), curve);
            if (withoutSign) {
                const CheckedMark negative = compare(layer, frame, -frame.x(), curve);
                if (std::isnan(mark.error) || negative.error < mark.error)
                    mark = negative;
            }
            marks.append(mark);
        }
    }
    return marks;
}
