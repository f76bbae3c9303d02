#ifndef NAMEDVALUES_H
#define NAMEDVALUES_H

#include <limits>

// Names for values that many tests use.

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double maxDouble = std::numeric_limits<double>::max();
constexpr double smallestDouble = std::numeric_limits<double>::denorm_min();
constexpr int minInt = std::numeric_limits<int>::min();
constexpr int maxInt = std::numeric_limits<int>::max();

// The two modes of the bias: gaugeData::midpointBias.
constexpr bool exponentialCurve = false;
constexpr bool midpointCurve = true;

#endif
