#ifndef SIZEESTIMATE_H
#define SIZEESTIMATE_H

struct gaugeData;

/// The number of digits before the decimal point of the layer's largest tick value.
[[nodiscard]] double valueDigits(const gaugeData &layer);

/// The number of primary ticks; not below 0.
[[nodiscard]] double primaryTicks(const gaugeData &layer);

#endif
