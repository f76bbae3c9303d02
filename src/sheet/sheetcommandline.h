#ifndef SHEETCOMMANDLINE_H
#define SHEETCOMMANDLINE_H

#include "sheet/sheetoptions.h"

#include <QByteArrayList>

/// A parsed command line: options, or a text to show.
struct SheetCommandLine
{
    enum class Outcome { MakeSheet, ShowText, WrongUsage };

    Outcome outcome = Outcome::MakeSheet;
    QString text; ///< The help, the version, or the error.
    SheetOptions options;
};

/// Parses the arguments as main() gets them, program name first. Needs the application object, for the
/// program's name and version.
[[nodiscard]] SheetCommandLine parseSheetCommandLine(const QByteArrayList &arguments);

#endif
