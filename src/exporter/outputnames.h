#ifndef OUTPUTNAMES_H
#define OUTPUTNAMES_H

#include "exporter/exportoptions.h"

#include <QList>
#include <QString>

/// One file to make of a gauge.
struct Output
{
    const ExportFormat *format;
    int size;     ///< In pixels; 0 for a format without a size.
    QString part; ///< The name of the GaugePart that is drawn. Empty: the whole gauge.
    QString path;
};

/// The files to make of a gauge. A part for which the gauge has no layers gets no file.
[[nodiscard]] QList<Output> outputsOf(const QString &gaugePath, const ExportOptions &options);

/// Why no files can be named after the gauge: its name is empty without its suffix, or only dots, and would
/// lead to another folder. Empty when there is no such reason.
[[nodiscard]] QString checkBaseName(const QString &gaugePath, const ExportOptions &options);

/// For each gauge the reason why it is not exported: one of its files has the name of a file of an earlier
/// gauge. Empty when there is no such reason.
[[nodiscard]] QStringList findNameCollisions(const ExportOptions &options);

#endif
