#ifndef KEYFRAMES_H
#define KEYFRAMES_H

#include <QList>
#include <QPointF>
#include <QString>

struct gaugeData;
struct gaugeLayer;

/// Where a needle points for each primary tick of a layer: x is the tick's value, y its angle in degrees
/// clockwise from 12 o'clock. Whether the labels are shown does not matter. Empty without primary divisions.
[[nodiscard]] QList<QPointF> keyframes(const gaugeData &layer);

/// The keyframes of all layers as comma-separated text, a header line first. Every line ends in a single
/// carriage return, without a line feed.
[[nodiscard]] QString keyframeTable(const QList<gaugeLayer> &layers);

/// A number as the keyframe table writes it: at most ten decimals and no trailing zeros, no exponent, no
/// grouping.
[[nodiscard]] QString csvNumber(double value);

#endif
