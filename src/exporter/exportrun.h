#ifndef EXPORTRUN_H
#define EXPORTRUN_H

struct ExportOptions;

/// Exports all gauges and tells the user about the progress. Returns whether all files were made and listed;
/// a gauge that fails does not keep the others from being made.
[[nodiscard]] bool exportAll(const ExportOptions &options);

#endif
