#ifndef TERMINAL_H
#define TERMINAL_H

#include <QByteArray>
#include <QString>

#include <array>
#include <cstdlib>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

/// A pseudo-terminal of the given width.
struct Terminal
{
    explicit Terminal(unsigned short columns)
    {
        grantpt(descriptor);
        unlockpt(descriptor);
        winsize size{};
        size.ws_col = columns;
        ioctl(descriptor, TIOCSWINSZ, &size);
    }
    [[nodiscard]] bool isOpen() const { return descriptor >= 0; }
    [[nodiscard]] QString path() const { return QString::fromLocal8Bit(ptsname(descriptor)); }
    /// What was written to it.
    [[nodiscard]] QByteArray takeText() const
    {
        QByteArray text;
        std::array<char, 4096> chunk{};
        for (ssize_t length = 0; (length = ::read(descriptor, chunk.data(), chunk.size())) > 0;)
            text.append(chunk.data(), length);
        close(descriptor);
        return text;
    }
    int descriptor = posix_openpt(O_RDWR | O_NOCTTY);
};

#endif
