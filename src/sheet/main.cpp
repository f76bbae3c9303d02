#include "sheet/sheetcommandline.h"
#include "sheet/sheetrun.h"
#include "tools/outputfile.h"
#include "tools/program.h"
#include "tools/terminal.h"

#include <QGuiApplication>
#include <QHash>

#include <algorithm>

namespace {

int run(const SheetCommandLine &commandLine)
{
    if (commandLine.outcome == SheetCommandLine::Outcome::ShowText)
        return showText(commandLine.text);
    if (commandLine.outcome == SheetCommandLine::Outcome::WrongUsage)
        return failUsage(commandLine.text);
    const SheetOptions &options = commandLine.options;
    if (isStandardOutput(options.outputFile) && !options.dryRun && isStandardOutputTerminal())
        return failUsage(QStringLiteral("standard output is a terminal; redirect the PDF to a file"));
    return makeSheet(options) ? AllMade : SomeFailed;
}

} // namespace

int main(int argc, char *argv[])
{
    prepareProgram();
    // Qt writes the local time into a PDF, in a form whose length depends on the time zone. The sheet has no
    // time at all, but its length would differ.
    qputenv("TZ", "UTC");
    // Qt does not see the arguments: it would take some of them, such as -platform, for its own.
    int applicationArgc = std::min(argc, 1);
    // The order of the fonts in a PDF is that of a hash table.
    QHashSeed::setDeterministicGlobalSeed();
    const QGuiApplication application(applicationArgc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("corvalence-sheet"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVALENCE_VERSION));
    return run(parseSheetCommandLine(programArguments(argc, argv)));
}
