#include "exporter/commandline.h"
#include "exporter/exportrun.h"

#include <QGuiApplication>
#include <QLoggingCategory>

#include <cstdio>

namespace {

enum ExitStatus { AllMade = 0, SomeFailed = 1, WrongUsage = 2 };

} // namespace

int main(int argc, char *argv[])
{
    // Labels need a platform to take their fonts from, but no display.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // Standard error holds one line for each gauge that fails and nothing else; what the libraries have to
    // say can be had by their own means, QT_LOGGING_RULES.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\n*.warning=false"));

    const QGuiApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("corvalence-export"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVALENCE_VERSION));

    const CommandLine commandLine = readCommandLine(QCoreApplication::arguments());
    switch (commandLine.outcome) {
    case CommandLine::Outcome::ShowText:
        std::fputs(qPrintable(commandLine.text), stdout);
        return AllMade;
    case CommandLine::Outcome::WrongUsage:
        std::fprintf(stderr, "corvalence-export: %s\nSee corvalence-export --help.\n",
                     qPrintable(commandLine.text));
        return WrongUsage;
    case CommandLine::Outcome::Export:
        break;
    }
    return exportAll(commandLine.settings) ? AllMade : SomeFailed;
}
