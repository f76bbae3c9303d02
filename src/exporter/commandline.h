#ifndef COMMANDLINE_H
#define COMMANDLINE_H

#include "exporter/exportoptions.h"

#include <QByteArrayList>

/// A parsed command line: options, or a text to show.
struct CommandLine
{
    enum class Outcome { Export, ShowText, WrongUsage };

    Outcome outcome = Outcome::Export;
    QString text; ///< The help, the version, or the error.
    ExportOptions options;
};

/// Parses the arguments as main() gets them, program name first. Needs the application object, for the
/// program's name and version.
[[nodiscard]] CommandLine parseCommandLine(const QByteArrayList &arguments);

#endif
