#ifndef LAYERNAMES_H
#define LAYERNAMES_H

#include <QList>
#include <QString>

struct gaugeLayer;

/// What happens to the layers of a gauge that is loaded into a layer list.
enum class LoadInto {
    CurrentRow, ///< The first layer replaces the current row, the others are appended.
    NewRows     ///< All layers are appended.
};

/// Gives every layer without a name the name that its row gets in a layer list: @a baseName (the file's name
/// without its suffix) for the first layer if it replaces a row or is the only one, otherwise "Layer N" with
/// the number of its row, counted from 1. @a rowCount is the number of rows before the gauge is loaded.
void nameUnnamedLayers(QList<gaugeLayer> &layers, const QString &baseName, LoadInto target,
                       qsizetype rowCount);

#endif
