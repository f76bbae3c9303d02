#ifndef LAYERSELECTION_H
#define LAYERSELECTION_H

#include <QList>
#include <QString>

struct gaugeLayer;

/// The rows of the layers that a text stands for: of all layers with this name, or else with the names and
/// numbers that it lists, separated by commas. A part that ends in "*" and is no layer's name stands for all
/// layers whose names begin so. The bottom layer is number 1, in row 0. Sets @a unknown to a part that stands
/// for no layer.
[[nodiscard]] QList<qsizetype> findLayers(const QString &value, const QList<gaugeLayer> &layers,
                                          QString &unknown);

/// A message about a name that no layer has. It lists the names of the first 20 layers, up to 60 characters
/// of each.
[[nodiscard]] QString describeUnknownLayer(const QString &name, const QList<gaugeLayer> &layers);

#endif
