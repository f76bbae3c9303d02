#include "model/layernames.h"

#include "model/gaugedata.h"

#include <QCoreApplication>

void nameUnnamedLayers(QList<gaugeLayer> &layers, const QString &baseName, LoadInto target,
                       qsizetype rowCount)
{
    const bool replacesRow = target == LoadInto::CurrentRow;
    qsizetype rowNumber = replacesRow ? rowCount : rowCount + 1;
    for (qsizetype index = 0; index < layers.size(); ++index, ++rowNumber) {
        QString &name = layers[index].name;
        if (!name.isEmpty())
            continue;
        const bool takesBaseName = index == 0 && (replacesRow || layers.size() == 1);
        name = takesBaseName ? baseName : QCoreApplication::translate("Window", "Layer %1").arg(rowNumber);
    }
}
