#include "exporter/sizeestimate.h"

#include "model/gaugedata.h"
#include "render/sweep.h"

#include <algorithm>
#include <cmath>
#include <limits>

double valueDigits(const gaugeData &layer)
{
    const auto ticks = static_cast<double>(primaryTickCount(layer));
    const double last = layer.tickCountStart + layer.tickCountIncrement * ticks;
    const double largest = std::max(std::abs(layer.tickCountStart), std::abs(last));
    constexpr double maxDigits = std::numeric_limits<double>::max_exponent10 + 1;
    return largest < 10.0 || std::isnan(largest) ? 1.0 : std::min(std::log10(largest) + 1.0, maxDigits);
}

double primaryTicks(const gaugeData &layer)
{
    return static_cast<double>(std::max<qint64>(0, primaryTickCount(layer)));
}
