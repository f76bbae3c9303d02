#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include "exporter/exportoptions.h"
#include "tools/optionsreader.h"

#include <QByteArrayList>

using ExportCommandLine = CommandLine<ExportOptions>;

/// Parses the arguments as main() gets them, program name first. Needs the application object, for the
/// program's name and version.
[[nodiscard]] ExportCommandLine parseCommandLine(const QByteArrayList &arguments);

#endif
