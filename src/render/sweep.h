#ifndef SWEEP_H
#define SWEEP_H

#include <QtGlobal>

struct gaugeData;

/// Bends a linear fraction of the sweep, so that marks crowd toward one end of the scale.
///
/// @a t is 0 at the start of the sweep and 1 at its end; @a bias is meant to lie from 0 to 1, and 0.5 is the
/// identity. The exponential curve is 1 - (1 - t)^(2 bias) below 0.5 and t^(2 (1 - bias)) above, with a jump
/// at the ends: a bias of exactly 0 gives 1 and one of exactly 1 gives 0, whatever t is. With @a midpoint the
/// curve is the quadratic Bezier from 0 to 1 with the control value 2 bias - 0.5.
///
/// The result lies from 0 to 1 for every bias, or is not a number.
[[nodiscard]] double biasedFraction(double t, double bias, bool midpoint);

/// The number of primary ticks: one more than there are divisions, but for a full circle, whose last tick
/// would fall on its first. Zero or negative when there is nothing to draw.
[[nodiscard]] qint64 primaryTickCount(const gaugeData &layer);

/// The number of all ticks that a layer draws: primary, secondary and tertiary. A number too large for its
/// type is the largest that it holds.
[[nodiscard]] quint64 totalTickCount(const gaugeData &layer);

/// The linear fraction at which @a position of @a divisions lies. Not a number when there are no divisions.
[[nodiscard]] double divisionFraction(double position, int divisions);

/// The angle of the tick at a linear @a fraction of the layer's sweep, the bias applied, as a mathematical
/// angle: degrees counter-clockwise from 3 o'clock.
[[nodiscard]] double tickAngle(const gaugeData &layer, double fraction);

#endif
