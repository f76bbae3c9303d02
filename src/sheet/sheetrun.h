#ifndef SHEETRUN_H
#define SHEETRUN_H

struct SheetOptions;

/// Reads the gauges and writes the sheet. Prints one line for each gauge that fails, or one about the sheet.
/// Returns whether the sheet was made. It is made only if all gauges can be read.
[[nodiscard]] bool makeSheet(const SheetOptions &options);

#endif
