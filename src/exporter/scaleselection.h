#ifndef SCALESELECTION_H
#define SCALESELECTION_H

#include "render/angletable.h"

#include <QList>
#include <QString>
#include <QStringList>

struct gaugeLayer;

/// The scales of a gauge, or why they cannot be made.
struct ScaleTables
{
    QList<AngleTable> tables;
    QString failure; ///< Empty when there are tables.
};

/// Returns the scales that @a choices name, in their order; without choices those of all layers whose labels
/// are shown, in the order of @a layers and without layers that have no scale.
///
/// A choice names layers as for findLayers(), and each of them becomes a table. After "NAME=", the layers
/// become one table of this name: where one ends, the next must begin, at the same value and to half a degree
/// at the same angle. Fails when there is no such layer, a layer that was chosen has no scale, or layers do
/// not meet.
[[nodiscard]] ScaleTables scaleTables(const QList<gaugeLayer> &layers, const QStringList &choices,
                                      double maxError);

#endif
