#include "fit/sweepfit.h"

#include "render/sweep.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

/// An exponential bias of 0 or 1 puts all ticks at an end, and the editor shows two decimals.
constexpr double minExponentialBias = 0.01;
constexpr double maxExponentialBias = 0.99;

struct BiasRange
{
    double min = 0.0;
    double max = 1.0;

    [[nodiscard]] bool isEmpty() const { return !(min <= max); }
    [[nodiscard]] bool contains(double bias) const { return min <= bias && bias <= max; }
    [[nodiscard]] double middle() const { return (min + max) / 2.0; }
};

/// Returns the bias with which biasedFraction(@a t) is @a fraction; both between 0 and 1, and neither 0
/// nor 1. For every t, a larger bias gives a larger fraction.
double biasOf(double t, double fraction, bool midpoint)
{
    if (midpoint) {
        const double control = (fraction - t * t) / (2.0 * (1.0 - t) * t);
        return (control + 0.5) / 2.0;
    }
    return fraction < t ? std::log(1.0 - fraction) / std::log(1.0 - t) / 2.0
                        : 1.0 - std::log(fraction) / std::log(t) / 2.0;
}

/// Returns the range of biases with which the sweep from @a start to @a end places its ticks within @a error
/// of @a angles.
BiasRange biasRange(std::span<const double> angles, double start, double end, double error, bool midpoint)
{
    constexpr BiasRange none{.min = 1.0, .max = 0.0};
    if (!(std::abs(angles.front() - start) <= error && std::abs(angles.back() - end) <= error))
        return none;

    BiasRange range;
    if (!midpoint)
        range = {.min = minExponentialBias, .max = maxExponentialBias};
    const double length = end - start;
    const size_t divisions = angles.size() - 1;
    // Distant marks follow each other: they limit the bias most, so that the loop ends early. A prime number
    // of steps reaches every mark once.
    constexpr size_t prime = 1'000'003;
    for (size_t step = 1; step < divisions && !range.isEmpty(); ++step) {
        const size_t i = step * prime % divisions;
        const double nearest = angles[i] - error - start;
        const double furthest = angles[i] + error - start;
        if (length == 0.0) {
            if (nearest > 0.0 || furthest < 0.0)
                return none;
            continue;
        }
        const double low = (length > 0.0 ? nearest : furthest) / length;
        const double high = (length > 0.0 ? furthest : nearest) / length;
        if (low > 1.0 || high < 0.0)
            return none;
        const double t = static_cast<double>(i) / static_cast<double>(divisions);
        if (low > 0.0)
            range.min = std::max(range.min, biasOf(t, low, midpoint));
        if (high < 1.0)
            range.max = std::min(range.max, biasOf(t, high, midpoint));
    }
    return range;
}

/// Returns the smallest error for which biasRange() is not empty, but at least @a max / 4096; if it is more
/// than @a max, returns nothing.
std::optional<double> smallestError(std::span<const double> angles, double start, double end, double max,
                                    bool midpoint)
{
    if (biasRange(angles, start, end, max, midpoint).isEmpty())
        return {};
    double min = 0.0;
    for (int i = 0; i < 12; ++i) {
        const double middle = (min + max) / 2.0;
        (biasRange(angles, start, end, middle, midpoint).isEmpty() ? min : max) = middle;
    }
    return max;
}

/// Returns the number with the fewest decimals in the middle of @a range, or the middle itself.
double simplestBias(const BiasRange &range)
{
    if (range.contains(0.5))
        return 0.5;
    for (const double scale : {100.0, 1e3, 1e4, 1e5}) {
        const double rounded = std::round(range.middle() * scale) / scale;
        if (range.contains(rounded))
            return rounded;
    }
    return range.middle();
}

/// Returns the largest distance of a tick from its angle.
double distanceOf(const Sweep &sweep, std::span<const double> angles)
{
    const auto divisions = static_cast<double>(std::max<size_t>(1, angles.size() - 1));
    double largest = 0.0;
    for (size_t i = 0; i < angles.size(); ++i) {
        const double t = static_cast<double>(i) / divisions;
        const double fraction = biasedFraction(t, sweep.bias, sweep.midpointBias);
        largest = std::max(largest, std::abs(sweep.start + fraction * (sweep.end - sweep.start) - angles[i]));
    }
    return largest;
}

/// Returns the number with two decimals in @a range with which @a sweep is closest to @a angles, or nothing
/// if there is none. No bias, if that is as close.
std::optional<double> roundedBias(Sweep sweep, const BiasRange &range, std::span<const double> angles)
{
    std::optional<double> best;
    double smallest = 0.0;
    const auto consider = [&](double bias) {
        sweep.bias = bias;
        const double distance = distanceOf(sweep, angles);
        if (!best || distance < smallest) {
            best = bias;
            smallest = distance;
        }
    };
    if (range.contains(0.5))
        consider(0.5);
    for (int i = static_cast<int>(std::ceil(range.min * 100.0)); i <= range.max * 100.0; ++i)
        consider(i / 100.0);
    return best;
}

bool fitsWith(bool midpoint, bool roundsBias, std::span<const double> angles, double start, double end,
              double error)
{
    const BiasRange range = biasRange(angles, start, end, error, midpoint);
    if (range.isEmpty() || !roundsBias)
        return !range.isEmpty();
    return std::ceil(range.min * 100.0) <= std::floor(range.max * 100.0);
}

} // namespace

bool maybeFits(std::span<const double> angles, double error)
{
    // Where both ends depart by the error, each tick moves by at most the error against a sweep with its ends
    // on the curve.
    return std::abs(angles.back() - angles.front()) <= 2.0 * error ||
           fits(angles, angles.front(), angles.back(), 2.0 * error, false);
}

bool fits(std::span<const double> angles, double start, double end, double error, bool roundsBias)
{
    return fitsWith(false, roundsBias, angles, start, end, error) ||
           fitsWith(true, roundsBias, angles, start, end, error);
}

std::optional<Sweep> closestSweep(std::span<const double> angles, double start, double end, double error,
                                  bool roundsBias)
{
    std::optional<Sweep> best;
    // One with two decimals goes before a closer one.
    std::pair<bool, double> bestRank;
    for (const bool midpoint : {false, true}) {
        const std::optional<double> least = smallestError(angles, start, end, error, midpoint);
        if (!least)
            continue;
        Sweep sweep{.start = start, .end = end, .bias = 0.5, .midpointBias = midpoint};
        std::optional<double> rounded;
        if (roundsBias)
            rounded = roundedBias(sweep, biasRange(angles, start, end, error, midpoint), angles);
        const double allowed = std::min(error, *least + 0.01);
        sweep.bias = rounded.value_or(simplestBias(biasRange(angles, start, end, allowed, midpoint)));
        const std::pair<bool, double> rank{!rounded, distanceOf(sweep, angles)};
        if (!best || rank < bestRank) {
            best = sweep;
            bestRank = rank;
        }
    }
    return best;
}
