#include "tools/program.h"

#include "tools/terminal.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLoggingCategory>

#include <csignal>
#include <cstdio>

#ifdef Q_OS_WIN
#include <windows.h>
// After windows.h
#include <shellapi.h>
#endif

namespace {

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

/// The program's name in UTF-8.
QByteArray programName()
{
    return QCoreApplication::applicationName().toUtf8();
}

} // namespace

void prepareProgram()
{
    openStandardStreams();
    ignoreSignals();
    setUpEnvironment();
    // Standard error has the program's own lines and nothing else. QT_LOGGING_RULES turns the messages of the
    // libraries on.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false\n*.info=false\n*.warning=false"));
}

QByteArrayList programArguments(int argc, char **argv)
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

QStringList decodedArguments(const QByteArrayList &arguments, QStringList &notUtf8)
{
    QStringList texts{QCoreApplication::applicationName()};
    for (const QByteArray &argument : arguments.mid(1)) {
        texts.append(QString::fromUtf8(argument));
        if (texts.constLast().toUtf8() != argument)
            notUtf8.append(texts.constLast());
    }
    return texts;
}

QString nativeName(const QString &name)
{
    return name.startsWith(QLatin1Char(':')) ? QStringLiteral("./") + name : name;
}

QString countText(qsizetype count, const QString &noun)
{
    return QStringLiteral("%1 %2%3").arg(count).arg(noun, count == 1 ? QString() : QStringLiteral("s"));
}

ExitStatus failUsage(const QString &error)
{
    const QByteArray name = programName();
    std::fprintf(stderr, "%s: %s\nSee %s --help.\n", name.constData(), maskControlCharacters(error).c_str(),
                 name.constData());
    return WrongUsage;
}

ExitStatus showText(const QString &text)
{
    const QString reason = writeStandardOutput(text.toUtf8());
    return reason.isEmpty() ? AllMade : fail(reason);
}

ExitStatus fail(const QString &reason)
{
    std::fprintf(stderr, "%s: %s\n", programName().constData(), maskControlCharacters(reason).c_str());
    return SomeFailed;
}
