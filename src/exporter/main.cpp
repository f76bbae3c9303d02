#include "exporter/commandline.h"
#include "exporter/exportrun.h"
#include "exporter/outputfile.h"
#include "exporter/terminal.h"
#include "exporter/workers.h"

#include <QGuiApplication>
#include <QLoggingCategory>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#ifdef Q_OS_WIN
#include <windows.h>
// After windows.h
#include <shellapi.h>
#endif

namespace {

enum ExitStatus { AllMade = 0, SomeFailed = 1, WrongUsage = 2 };

/// Labels need a platform for their fonts, but no display. The bytes of pictures do not depend on the user's
/// settings for screens.
void setUpEnvironment()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    for (const char *variable :
         {"QT_QPA_PLATFORMTHEME", "QT_FONT_DPI", "QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS",
          "QT_SCALE_FACTOR_ROUNDING_POLICY", "QT_ENABLE_HIGHDPI_SCALING", "QT_USE_PHYSICAL_DPI",
          "QT_DPI_ADJUSTMENT_POLICY"})
        qunsetenv(variable);
}

/// A closed pipe or a limit on the size of files does not end the program: writing fails with an error.
void ignoreSignals()
{
#ifndef Q_OS_WIN
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

/// The arguments in UTF-8, as far as they can be decoded.
QByteArrayList argumentList(int argc, char **argv)
{
#ifdef Q_OS_WIN
    // argv is in the system's code page, which does not hold all names.
    QByteArrayList arguments;
    int count = 0;
    LPWSTR *const texts = CommandLineToArgvW(GetCommandLineW(), &count);
    for (int index = 0; index < count; ++index)
        arguments.append(QString::fromWCharArray(texts[index]).toUtf8());
    LocalFree(texts);
    return arguments;
#else
    return {argv, argv + argc};
#endif
}

int fail(const QString &error)
{
    std::fprintf(stderr, "corvalence-export: %s\nSee corvalence-export --help.\n",
                 maskControlCharacters(error).c_str());
    return WrongUsage;
}

int show(const QString &text)
{
    const QString reason = writeStandardOutput(text.toUtf8());
    if (reason.isEmpty())
        return AllMade;
    std::fprintf(stderr, "corvalence-export: %s\n", qUtf8Printable(reason));
    return SomeFailed;
}

int run(const CommandLine &commandLine)
{
    if (commandLine.outcome == CommandLine::Outcome::ShowText)
        return show(commandLine.text);
    if (commandLine.outcome == CommandLine::Outcome::WrongUsage)
        return fail(commandLine.text);
    const ExportOptions &options = commandLine.options;
    const bool toStandardOutput = options.readsStandardInput() || isStandardOutput(options.outputFile);
    if (toStandardOutput && !options.dryRun && isStandardOutputTerminal() &&
        options.formats.constFirst()->isPicture)
        return fail(QStringLiteral("standard output is a terminal; redirect the picture to a file"));
    return exportAll(options) ? AllMade : SomeFailed;
}

} // namespace

int main(int argc, char *argv[])
{
    openStandardStreams();
    ignoreSignals();
    setUpEnvironment();
    // Standard error has one line for each gauge that fails and nothing else. QT_LOGGING_RULES turns the
    // messages of the libraries on.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\n*.warning=false"));

    // Qt does not see the arguments: it would take some of them, such as -platform, for its own.
    int applicationArgc = std::min(argc, 1);
    const QGuiApplication application(applicationArgc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("corvalence-export"));
    QCoreApplication::setApplicationVersion(QStringLiteral(CORVALENCE_VERSION));

    const int status = run(parseCommandLine(argumentList(argc, argv)));
    if (isPoolBlocked()) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
