#include "exporter/commandline.h"
#include "exporter/exportrun.h"
#include "exporter/workers.h"
#include "tools/outputfile.h"
#include "tools/program.h"
#include "tools/terminal.h"

#include <QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

int run(const ExportCommandLine &commandLine)
{
    if (commandLine.outcome == CommandLineOutcome::ShowText)
        return showText(commandLine.text);
    if (commandLine.outcome == CommandLineOutcome::WrongUsage)
        return failUsage(commandLine.text);
    const ExportOptions &options = commandLine.options;
    const bool toStandardOutput = options.readsStandardInput() || isStandardOutput(options.outputFile);
    if (toStandardOutput && !options.dryRun && isStandardOutputTerminal() &&
        options.formats.constFirst()->isPicture)
        return failUsage(QStringLiteral("standard output is a terminal; redirect the picture to a file"));
    return exportAll(options) ? AllMade : SomeFailed;
}

} // namespace

int main(int argc, char *argv[])
{
    prepareProgram();
    // Qt does not see the arguments: it would take some of them, such as -platform, for its own.
    int applicationArgc = std::min(argc, 1);
    const QGuiApplication application(applicationArgc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("corvalence-export"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVALENCE_VERSION));

    const int status = run(parseCommandLine(programArguments(argc, argv)));
    if (isPoolBlocked()) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
