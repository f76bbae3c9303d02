#ifndef SWEEP_H
#define SWEEP_H

#include <QtGlobal>

struct gaugeData;

/// Maps a linear fraction of the sweep to the biased fraction, so that ticks are denser at one end.
///
/// @a t is 0 at the start of the sweep and 1 at its end. @a bias is normally between 0 and 1; 0.5 returns
/// @a t. The exponential curve is 1 - (1 - t)^(2 bias) for a bias below 0.5 and t^(2 (1 - bias)) above. It
/// jumps at its ends: a bias of exactly 0 always gives 1, a bias of exactly 1 always gives 0. The
/// @a midpoint curve is a quadratic Bezier curve from 0 to 1 with the control value 2 bias - 0.5.
///
/// The result is between 0 and 1 for every bias, or NaN.
[[nodiscard]] double biasedFraction(double t, double bias, bool midpoint);

/// Returns the number of primary ticks: the number of divisions plus 1, or without the 1 for a full circle,
/// where the last tick would be on the first. Zero or negative if there is nothing to draw.
[[nodiscard]] qint64 primaryTickCount(const gaugeData &layer);

/// Returns the number of primary, secondary and tertiary ticks that a layer draws, limited to the largest
/// quint64.
[[nodiscard]] quint64 totalTickCount(const gaugeData &layer);

/// Returns @a position / @a divisions, or NaN when @a divisions is 0.
[[nodiscard]] double divisionFraction(double position, int divisions);

/// Returns the angle of the tick at a linear @a fraction of the sweep after applying the layer's bias.
/// In degrees counter-clockwise from 3 o'clock.
[[nodiscard]] double tickAngle(const gaugeData &layer, double fraction);

#endif
