#ifndef FITCOMMANDLINE_H
#define FITCOMMANDLINE_H

#include "fit/fitoptions.h"
#include "tools/optionsreader.h"

#include <QByteArrayList>

using FitCommandLine = CommandLine<FitOptions>;

/// Parses the arguments as main() gets them, program name first. Needs the application object, for the
/// program's name and version.
[[nodiscard]] FitCommandLine parseFitCommandLine(const QByteArrayList &arguments);

#endif
