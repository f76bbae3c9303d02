#ifndef GAUGEINPUT_H
#define GAUGEINPUT_H

#include "model/gaugedata.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// The limit of gauge files that programs have unless the user sets another, in MiB.
inline constexpr qint64 defaultMaxGaugeSize = 64;

/// Reads the layers in the bytes of a gauge file. Layers without a name get the names that a new window gives
/// them; @a baseName is the file's name without its suffix. Returns an empty text, or the reason for a
/// failure.
[[nodiscard]] QString readGauge(const QByteArray &bytes, const QString &baseName, QList<gaugeLayer> &layers);

/// Reads the layers of a gauge file of at most @a maxSize MiB in the same way. The reason for too large a
/// file names @a limitOption, the option that raises the limit, if there is one.
[[nodiscard]] QString readGaugeFile(const QString &path, qint64 maxSize, QList<gaugeLayer> &layers,
                                    const QString &limitOption = {});

/// Finds the rows of the layers that @a wanted stands for, as findLayers() does. Returns an empty text, or an
/// error that lists the names of the layers.
[[nodiscard]] QString selectLayers(const QString &wanted, const QList<gaugeLayer> &layers,
                                   QList<qsizetype> &rows);

/// Returns an empty text when the layers have at most @a limit ticks and arcs, otherwise an error that names
/// --tick-limit.
[[nodiscard]] QString checkTickCount(const QList<gaugeLayer> &layers, quint64 limit);

#endif
