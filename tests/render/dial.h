#ifndef DIAL_H
#define DIAL_H

#include "model/gaugedata.h"
#include "support/recordingdevice.h"

#include <QImage>
#include <QList>
#include <QPointF>
#include <QStringList>

#include <functional>

class QPainter;

/// What reaches a paint device when a gauge is painted on it at @a size.
[[nodiscard]] QList<RecordedCall> paintedCalls(const QList<gaugeData> &layers, int size = 512);

/// What reaches a paint device when @a draw paints on it, antialiased and at the scale that a gauge of
/// @a size has, with the empty brush that ticks and arcs are drawn with.
[[nodiscard]] QList<RecordedCall> bareCalls(const std::function<void(QPainter &)> &draw, int size = 512);

/// The calls of one kind.
[[nodiscard]] QList<RecordedCall> ofKind(RecordedCall::Kind kind, const QList<RecordedCall> &calls);
/// The lines of a gauge, in order.
[[nodiscard]] QList<RecordedCall> paintedLines(const gaugeData &layer);
/// The texts of a gauge, in order.
[[nodiscard]] QStringList paintedTexts(const gaugeData &layer);

/// A layer that draws nothing but primary ticks: red, with a secondary ring in green and a tertiary in blue
/// that are waiting for their counts.
[[nodiscard]] gaugeData ticksOnly();

/// Three divisions, each with a secondary and two tertiary ticks, four arcs, labels: thin and plain, or
/// @a heavy, with wide lines, round caps and turned labels.
[[nodiscard]] gaugeData busyLayer(bool heavy);

/// The stack painted on a transparent picture.
[[nodiscard]] QImage picture(const QList<gaugeData> &layers, int size = 512);

/// The point at a distance of the centre along a mathematical angle in degrees.
[[nodiscard]] QPointF dialPoint(double distance, double angle);

/// A solid pen as the dial's lines have it.
[[nodiscard]] QPen dialPen(const QColor &color, double width, Qt::PenCapStyle cap);

/// The ends of a line to the last bit.
[[nodiscard]] QString lineText(const QPointF &from, const QPointF &to);
[[nodiscard]] QString lineText(const QLineF &line);

#endif
