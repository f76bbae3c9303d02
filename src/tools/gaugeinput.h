#ifndef GAUGEINPUT_H
#define GAUGEINPUT_H

#include "model/gaugedata.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// Reads the layers in the bytes of a gauge file. Layers without a name get the names that a new window gives
/// them; @a baseName is the file's name without its suffix. Returns an empty text, or the reason for a
/// failure.
[[nodiscard]] QString readGauge(const QByteArray &bytes, const QString &baseName, QList<gaugeLayer> &layers);

/// Returns an empty text when the layers have at most @a limit ticks and arcs, otherwise an error that names
/// --tick-limit.
[[nodiscard]] QString checkTickCount(const QList<gaugeLayer> &layers, quint64 limit);

#endif
