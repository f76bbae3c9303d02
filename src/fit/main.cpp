#include "fit/fitcommandline.h"
#include "fit/fitrun.h"
#include "tools/program.h"

#include <QGuiApplication>

#include <algorithm>

int main(int argc, char *argv[])
{
    prepareProgram();
    // Qt does not see the arguments: it would take some of them, such as -platform, for its own.
    int applicationArgc = std::min(argc, 1);
    const QGuiApplication application(applicationArgc, argv); // for the sizes of labels
    QCoreApplication::setApplicationName(QStringLiteral("corvalence-fit"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVALENCE_VERSION));

    const FitCommandLine commandLine = parseFitCommandLine(programArguments(argc, argv));
    if (commandLine.outcome == FitCommandLine::Outcome::ShowText)
        return showText(commandLine.text);
    if (commandLine.outcome == FitCommandLine::Outcome::WrongUsage)
        return failUsage(commandLine.text);
    return runFit(commandLine.options);
}
