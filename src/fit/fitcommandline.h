#ifndef FITCOMMANDLINE_H
#define FITCOMMANDLINE_H

#include "fit/fitoptions.h"

#include <QByteArrayList>

/// A parsed command line of corvalence-fit: options, or a text to show.
struct FitCommandLine
{
    enum class Outcome { Fit, ShowText, WrongUsage };

    Outcome outcome = Outcome::Fit;
    QString text; ///< The help, the version, or the error.
    FitOptions options;
};

/// Parses the arguments as main() gets them, program name first. Needs the application object, for the
/// program's name and version.
[[nodiscard]] FitCommandLine parseFitCommandLine(const QByteArrayList &arguments);

#endif
