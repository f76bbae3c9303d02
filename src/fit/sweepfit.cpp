#include "fit/sweepfit.h"

#include <algorithm>
#include <cmath>

namespace {

/// An exponential bias of 0 or 1 puts all ticks at an end, and the editor shows two decimals.
constexpr double minExponentialBias = 0.01;
constexpr double maxExponentialBias = 0.99;

struct BiasRange
{
    double min = 0.0;
    double max = 1.0;

    [[nodiscard]] bool isEmpty() const { return !(min <= max); }
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
    // In an order that jumps about the sweep: marks far apart are the first to contradict each other. A prime
    // number of steps reaches every mark once.
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
    const double middle = (range.min + range.max) / 2.0;
    if (range.min <= 0.5 && range.max >= 0.5)
        return 0.5;
    for (const double scale : {100.0, 1e3, 1e4, 1e5}) {
        const double rounded = std::round(middle * scale) / scale;
        if (rounded >= range.min && rounded <= range.max)
            return rounded;
    }
    return middle;
}

} // namespace

bool maybeFits(std::span<const double> angles, double error)
{
    // Where both ends depart by the error, each tick moves by at most the error against a sweep with its ends
    // on the curve.
    const auto fitsWith = [&](bool midpoint) {
        return !biasRange(angles, angles.front(), angles.back(), 2.0 * error, midpoint).isEmpty();
    };
    return std::abs(angles.back() - angles.front()) <= 2.0 * error || fitsWith(false) || fitsWith(true);
}

bool fits(std::span<const double> angles, double start, double end, double error)
{
    return !biasRange(angles, start, end, error, false).isEmpty() ||
           !biasRange(angles, start, end, error, true).isEmpty();
}

std::optional<Sweep> closestSweep(std::span<const double> angles, double start, double end, double error)
{
    std::optional<Sweep> closest;
    double closestError = error;
    for (const bool midpoint : {false, true}) {
        const std::optional<double> least = smallestError(angles, start, end, error, midpoint);
        if (!least || (closest && *least >= closestError))
            continue;
        const double allowed = std::min(error, *least + 0.01);
        const double bias = simplestBias(biasRange(angles, start, end, allowed, midpoint));
        closest = Sweep{.start = start, .end = end, .bias = bias, .midpointBias = midpoint};
        closestError = *least;
    }
    return closest;
}
