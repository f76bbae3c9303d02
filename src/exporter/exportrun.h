#ifndef EXPORTRUN_H
#define EXPORTRUN_H

struct ExportSettings;

/// Exports all gauges that @a settings name, several at a time, and tells the user how it goes. Returns
/// whether every one succeeded; the failure of one does not keep the others from being made.
[[nodiscard]] bool exportAll(const ExportSettings &settings);

#endif
