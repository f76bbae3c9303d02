#include "fit/scalefit.h"

#include "fit/scalecurve.h"
#include "fit/scalemarks.h"
#include "render/sweep.h"

#include <algorithm>
#include <cmath>

namespace {

QString name(double value)
{
    return QStringLiteral("Scale %1").arg(value, 0, 'g', 6);
}

ScaleFit failed(const QString &why)
{
    ScaleFit fit;
    fit.failure = why;
    return fit;
}

} // namespace

ScaleFit fitScale(const ScaleCurve &curve, const ScaleMarks &marks, double maxError, const gaugeData &look)
{
    ScaleFit fit;
    const int parts = marks.minor * marks.subminor;
    for (qsizetype i = 0; i < marks.labels.size(); ++i) {
        const double from = marks.labels.at(i);
        const double to = marks.labels.value(i + 1, from);
        const int count = i + 1 < marks.labels.size() ? parts : 1;
        for (int part = 0; part < count; ++part) {
            const double value = from + (to - from) * part / parts;
            const double angle = curve.angle(value);
            if (!std::isfinite(angle)) {
                return failed(QStringLiteral("the curve has no angle at %1").arg(value, 0, 'g', 6));
            }
            gaugeData layer = look;
            layer.startAngle = std::abs(angle) > 360.0 ? std::remainder(angle, 360.0) : angle;
            layer.angleLength = 360.0;
            layer.bias = 0.5;
            layer.midpointBias = false;
            const size_t ring = part == 0 ? 0 : part % marks.subminor == 0 ? 1 : 2;
            layer.divisionCount = {1, 1, 1};
            layer.divisionInnerRadius[0] = look.divisionInnerRadius.at(ring);
            layer.divisionOuterRadius[0] = look.divisionOuterRadius.at(ring);
            layer.divisionLineWidth[0] = look.divisionLineWidth.at(ring);
            layer.divisionColor[0] = look.divisionColor.at(ring);
            layer.tickCountEnabled = ring == 0;
            layer.tickCountStart = marks.withoutSign ? std::abs(value) : value;
            layer.tickCountIncrement = 1.0;
            layer.tickCountSkipFirst = false;
            layer.tickCountDecimalPlaces = marks.decimals;
            if (!fit.layers.isEmpty())
                layer.arcAngleLength = {};
            fit.layers.append({name(value), layer});
            const double error = std::abs(std::remainder(90.0 - tickAngle(layer, 0.0) - angle, 360.0));
            if (error > fit.worstError) {
                fit.worstError = error;
                fit.worstValue = value;
            }
        }
    }
    if (!(fit.worstError <= maxError))
        return failed(QStringLiteral("no layer is exact enough at %1").arg(fit.worstValue, 0, 'g', 6));
    return fit;
}
