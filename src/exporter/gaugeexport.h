#ifndef GAUGEEXPORT_H
#define GAUGEEXPORT_H

#include <QHash>
#include <QString>

class OutputOwners;
class Progress;
struct ExportOptions;

/// The gauge files of a call, by fileId().
using InputFiles = QHash<QString, QString>;

/// Exports one gauge file and tells @a progress about each file written. No file in @a inputs is replaced,
/// except that the gauge itself may be written in the gauge format. @a owners keeps gauges from writing the
/// same file.
///
/// Returns an empty text, or the reason for the first failure; the other files are still made. Thread-safe.
[[nodiscard]] QString exportGauge(const QString &gaugePath, const InputFiles &inputs,
                                  const ExportOptions &options, OutputOwners &owners, Progress &progress);

/// Exports the gauge on standard input to standard output. Returns an empty text, or the reason for the
/// failure.
[[nodiscard]] QString exportStandardInput(const ExportOptions &options);

#endif
