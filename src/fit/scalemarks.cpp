#include "fit/scalemarks.h"

#include <QString>

#include <algorithm>
#include <cmath>

namespace {

/// The part of a step by which a label may be outside of the range, because of rounding errors.
constexpr double stepTolerance = 1e-9;

/// Removes the rounding error of a product: 3 * 0.1 is not the number that is written 0.3.
double rounded(double label)
{
    return QString::number(label, 'g', 15).toDouble();
}

} // namespace

QList<double> steppedLabels(double min, double max, double step)
{
    if (!std::isfinite(min) || !std::isfinite(max) || !std::isfinite(step) || step <= 0.0)
        return {};
    const double first = std::ceil(min / step - stepTolerance);
    const double last = std::floor(max / step + stepTolerance);
    const bool valid = last >= first && last - first < maxLabelCount; // not true for NaN
    if (!valid)
        return {};

    QList<double> labels;
    const auto steps = static_cast<int>(last - first);
    for (int i = 0; i <= steps; ++i) {
        const double label = rounded((first + i) * step);
        if (!labels.isEmpty() && label <= labels.constLast())
            return {};
        labels.append(label == 0.0 ? 0.0 : label); // no negative zero, which would be written "-0"
    }
    return labels;
}

QList<double> roundLabels(double min, double max, int maxCount)
{
    if (!std::isfinite(max - min) || !(max > min) || maxCount < 2)
        return {};

    // Ten to this power gives at least as many labels as asked for.
    const int exponent = static_cast<int>(std::floor(std::log10(max - min) - std::log10(maxCount)));
    for (int power = exponent; power <= exponent + 3; ++power) {
        for (const int digit : {1, 2, 5}) {
            const double step = rounded(digit * std::pow(10.0, power));
            QList<double> labels = steppedLabels(min, max, step);
            if (labels.size() >= 2 && labels.size() <= maxCount)
                return labels;
        }
    }
    return {};
}

bool isWrittenExactly(double label, int decimals)
{
    return QString::number(label, 'f', decimals).toDouble() == label;
}

int labelDecimals(const QList<double> &labels)
{
    int decimals = 0;
    const auto isExact = [&decimals](double label) { return isWrittenExactly(label, decimals); };
    while (decimals < maxFormDecimals && !std::ranges::all_of(labels, isExact))
        ++decimals;
    return decimals;
}
