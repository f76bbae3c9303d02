#ifndef KEYFRAMES_H
#define KEYFRAMES_H

#include <QList>
#include <QPointF>
#include <QString>

struct gaugeData;
struct gaugeLayer;

/// Returns a point for each primary tick: x is the value of its label, y its angle in degrees clockwise from
/// 12 o'clock. Also includes ticks whose labels are not shown. Empty if there is no primary division.
[[nodiscard]] QList<QPointF> keyframes(const gaugeData &layer);

/// Returns the keyframes of all layers as comma-separated text with a header line. Every line ends with a
/// single carriage return, without a line feed.
[[nodiscard]] QString keyframeTable(const QList<gaugeLayer> &layers);

/// Formats a number for the keyframe table: up to ten decimals, no trailing zeros, no exponent, no group
/// separators.
[[nodiscard]] QString csvNumber(double value);

#endif
