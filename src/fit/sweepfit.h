#ifndef SWEEPFIT_H
#define SWEEPFIT_H

#include <optional>
#include <span>

/// A sweep that places ticks at equal parts of it, after applying a bias. Angles are in degrees clockwise
/// from 12 o'clock.
struct Sweep
{
    double start = 0.0;
    double end = 0.0;
    double bias = 0.5;
    bool midpointBias = false;
};

/// Returns whether a sweep with an end up to @a error degrees off the first and the last of @a angles may
/// place its ticks, one for each angle, within @a error of them. If false, there is no such sweep. If true,
/// there may be one. At least two angles.
[[nodiscard]] bool maybeFits(std::span<const double> angles, double error);

/// Returns whether there is a bias with which the sweep from @a start to @a end places its ticks, one for
/// each of @a angles, within @a error degrees of them. At least two angles. With @a roundsBias, only amounts
/// with two decimals count.
[[nodiscard]] bool fits(std::span<const double> angles, double start, double end, double error,
                        bool roundsBias);

/// Returns the sweep from @a start to @a end whose ticks are closest to @a angles; a single angle is that of
/// the first tick. Returns no value if they are not within @a error degrees. With @a roundsBias, the amount
/// of the bias has two decimals if possible; otherwise as few as cost no more than a hundredth of a degree.
[[nodiscard]] std::optional<Sweep> closestSweep(std::span<const double> angles, double start, double end,
                                                double error, bool roundsBias);

#endif
