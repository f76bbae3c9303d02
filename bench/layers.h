#ifndef LAYERS_H
#define LAYERS_H

#include "model/gaugedata.h"

/// A face as users make it: 270 degrees, 101 ticks of three rings, three wide arcs, bold labels.
[[nodiscard]] gaugeData typicalLayer();

/// The typical face, its labels turned with their ticks.
[[nodiscard]] gaugeData turnedLayer();

/// A full circle of @a ticks ticks, a multiple of 100, of one pixel and without labels: the cheapest lines
/// there are, so that what is not Qt's weighs most.
[[nodiscard]] gaugeData denseLayer(int ticks);

/// The dense layer with a power function for each tick.
[[nodiscard]] gaugeData denseBiasedLayer(int ticks);

#endif
