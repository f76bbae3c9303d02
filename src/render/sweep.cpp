#include "render/sweep.h"

#include "model/gaugedata.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

double exponential(double t, double bias)
{
    if (bias < 0.5) {
        const double exponent = 2.0 * bias;
        return exponent == 0.0 ? 1.0 : 1.0 - std::pow(1.0 - t, exponent);
    }
    if (bias == 0.5)
        return 1.0 - (1.0 - t);
    const double exponent = 2.0 * (1.0 - bias);
    return exponent == 0.0 ? 0.0 : std::pow(t, exponent);
}

double quadraticBezier(double t, double control)
{
    return 2.0 * (1.0 - t) * t * control + (1.0 - t) * (1.0 - t) * 0.0 + t * t;
}

} // namespace

double biasedFraction(double t, double bias, bool midpoint)
{
    const double fraction = midpoint ? quadraticBezier(t, 2.0 * bias - 0.5) : exponential(t, bias);
    // Not std::clamp, so that NaN is returned unchanged.
    if (fraction < 0.0)
        return 0.0;
    if (fraction > 1.0)
        return 1.0;
    return fraction;
}

qint64 primaryTickCount(const gaugeData &layer)
{
    const qint64 divisions = layer.divisionCount[0];
    const bool fullCircle = std::abs(layer.angleLength) >= 360.0;
    return fullCircle ? divisions : divisions + 1;
}

quint64 totalTickCount(const gaugeData &layer)
{
    const auto primaries = static_cast<quint64>(std::max<qint64>(0, primaryTickCount(layer)));
    if (layer.divisionCount[1] <= 1 || layer.divisionCount[0] <= 0)
        return primaries;

    // There is no gap after the last tick of a sweep that is not a full circle.
    const auto gaps = static_cast<quint64>(layer.divisionCount[0]);
    const auto secondaries = static_cast<quint64>(layer.divisionCount[1]);
    const auto tertiaries = static_cast<quint64>(std::max(1, layer.divisionCount[2]));
    const quint64 ticksPerGap = secondaries * tertiaries - 1;
    constexpr quint64 max = std::numeric_limits<quint64>::max();
    return ticksPerGap > (max - primaries) / gaps ? max : primaries + gaps * ticksPerGap;
}

double divisionFraction(double position, int divisions)
{
    return divisions == 0 ? std::numeric_limits<double>::quiet_NaN() : position / divisions;
}

double tickAngle(const gaugeData &layer, double fraction)
{
    return (90.0 - layer.startAngle) -
           biasedFraction(fraction, layer.bias, layer.midpointBias) * layer.angleLength;
}
