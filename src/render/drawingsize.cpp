#include "render/drawingsize.h"

#include "model/gaugedata.h"
#include "render/labels.h"
#include "render/sweep.h"

#include <algorithm>
#include <cmath>
#include <limits>

double digitCount(double number)
{
    constexpr double maxDigits = std::numeric_limits<double>::max_exponent10 + 1;
    const double size = std::abs(number);
    return size < 10.0 || std::isnan(size) ? 1.0 : std::min(std::log10(size) + 1.0, maxDigits);
}

double valueDigits(const gaugeData &layer)
{
    const auto ticks = static_cast<double>(primaryTickCount(layer));
    const double last = layer.tickCountStart + layer.tickCountIncrement * ticks;
    return std::max(digitCount(layer.tickCountStart), digitCount(last));
}

double primaryTicks(const gaugeData &layer)
{
    return static_cast<double>(std::max<qint64>(0, primaryTickCount(layer)));
}

namespace {

/// What the parts of a drawing take in bytes, measured with gauges of many ticks.
struct DrawingCosts
{
    double tick;
    double label;     ///< Without its text.
    double character; ///< Of a label.
    double outline;   ///< Of a character that is drawn as a path.
    bool repeatsFont; ///< Whether each label names its font family.
};

double drawingSize(const QList<gaugeData> &layers, bool textAsPaths, const DrawingCosts &costs)
{
    double size = 0.0;
    for (const gaugeData &data : layers) {
        size += static_cast<double>(totalTickCount(data)) * costs.tick;
        if (!data.tickCountEnabled)
            continue;
        const double characters =
            valueDigits(data) + std::clamp(data.tickCountDecimalPlaces, 0, maxLabelDecimals);
        double label = costs.label + characters * (textAsPaths ? costs.outline : costs.character);
        if (costs.repeatsFont)
            label += static_cast<double>(data.tickCountFont.family().toUtf8().size());
        size += primaryTicks(data) * label;
    }
    return size;
}

} // namespace

double svgDrawingSize(const QList<gaugeData> &layers, bool textAsPaths)
{
    return drawingSize(layers, textAsPaths, {100.0, 320.0, 25.0, 900.0, true});
}

double pdfDrawingSize(const QList<gaugeData> &layers, bool textAsPaths)
{
    return drawingSize(layers, textAsPaths, {20.0, 30.0, 5.0, 130.0, false});
}
