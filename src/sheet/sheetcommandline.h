#ifndef SHEETCOMMANDLINE_H
#define SHEETCOMMANDLINE_H

#include "sheet/sheetoptions.h"
#include "tools/optionsreader.h"

#include <QByteArrayList>

using SheetCommandLine = CommandLine<SheetOptions>;

/// Parses the arguments as main() gets them, program name first. Needs the application object, for the
/// program's name and version.
[[nodiscard]] SheetCommandLine parseSheetCommandLine(const QByteArrayList &arguments);

#endif
