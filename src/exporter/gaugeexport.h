#ifndef GAUGEEXPORT_H
#define GAUGEEXPORT_H

#include <QString>

class Progress;
struct ExportSettings;

/// The path, without size and suffix, that the files of a gauge share. Two gauges with the same one would
/// write over each other.
[[nodiscard]] QString outputStem(const QString &gaugePath, const ExportSettings &settings);

/// Exports one gauge file as @a settings say and tells @a progress of each file written.
///
/// Returns an empty text, or the reason for the first failure; what else can be written still is. Files are
/// written whole or not at all. Uses no state but its arguments, and so runs in any thread.
[[nodiscard]] QString exportGauge(const QString &gaugePath, const ExportSettings &settings,
                                  Progress &progress);

/// Exports the gauge on standard input to standard output. Returns an empty text or the reason for the
/// failure, after which nothing was written.
[[nodiscard]] QString exportStandardInput(const ExportSettings &settings);

#endif
