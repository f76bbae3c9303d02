#include "tools/terminal.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>
#endif

namespace {

bool standardOutputWasClosed = false;

} // namespace

void openStandardStreams()
{
#ifndef Q_OS_WIN
    standardOutputWasClosed = fcntl(STDOUT_FILENO, F_GETFD) == -1;
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        // The lowest free descriptor is taken, which is this one.
        if (fcntl(descriptor, F_GETFD) == -1)
            (void)open("/dev/null", O_RDWR);
    }
#endif
}

QString writeStandardOutput(const QByteArray &bytes)
{
    if (standardOutputWasClosed)
        return QStringLiteral("Standard output is closed.");
    const auto size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) == size && std::fflush(stdout) == 0)
        return {};
    return QStringLiteral("Standard output: ") +
           QString::fromStdString(std::generic_category().message(errno));
}

bool isStandardOutputTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stdout)) != 0;
#else
    return isatty(STDOUT_FILENO) != 0;
#endif
}

int terminalWidth()
{
#ifndef Q_OS_WIN
    winsize size{};
    if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
#endif
    return 80;
}

std::string maskControlCharacters(QString text)
{
    for (QChar &character : text) {
        switch (character.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            character = u'?';
            break;
        default:
            break;
        }
    }
    return text.toStdString();
}
