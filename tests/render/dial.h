#ifndef DIAL_H
#define DIAL_H

#include "model/gaugedata.h"
#include "support/recordingdevice.h"

#include <QImage>
#include <QList>
#include <QPointF>
#include <QStringList>

/// Draws the layers with plain QPainter calls, as the format describes it and without any limits. The
/// painter under test must make the same calls.
void drawReference(QPainter &painter, int size, const QList<gaugeData> &layers);

/// The calls that drawReference() makes.
[[nodiscard]] QList<RecordedCall> referenceCalls(const QList<gaugeData> &layers, int size = 512);

/// The calls that paintGauge() makes.
[[nodiscard]] QList<RecordedCall> paintedCalls(const QList<gaugeData> &layers, int size = 512);

/// The calls of one kind that paintGauge() makes for one layer.
[[nodiscard]] QList<RecordedCall> paintedCalls(RecordedCall::Kind kind, const gaugeData &layer);

/// The texts that paintGauge() draws.
[[nodiscard]] QStringList paintedTexts(const gaugeData &layer);

[[nodiscard]] QStringList descriptions(const QList<RecordedCall> &calls);

/// An image of the layers on a transparent background.
[[nodiscard]] QImage picture(const QList<gaugeData> &layers, int size = 512);

/// A layer that draws only ticks: ring 1 in red, ring 2 in green, ring 3 in blue.
[[nodiscard]] gaugeData ticksOnly();

/// A layer with ticks of all rings, four arcs and labels: with @a wide, wide lines, round caps and rotated
/// labels.
[[nodiscard]] gaugeData busyLayer(bool wide);

/// The point at a distance from the centre, at an angle in degrees counter-clockwise from 3 o'clock.
[[nodiscard]] QPointF dialPoint(double distance, double angle);

#endif
