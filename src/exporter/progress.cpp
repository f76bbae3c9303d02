#include "exporter/progress.h"

#include <QtGlobal>

#include <algorithm>
#include <cstdio>
#include <string>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

/// Text for one line of a terminal or a log: a name with a line feed must not pass for two.
std::string oneLine(QString text)
{
    for (QChar &character : text) {
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char('?');
    }
    return text.toStdString();
}

} // namespace

Progress::Progress(size_t total, Style style)
    : m_total(total)
    , m_style(style)
{
}

Progress::Style Progress::styleForStandardOutput()
{
#ifdef Q_OS_WIN
    const bool terminal = _isatty(_fileno(stdout)) != 0;
#else
    const bool terminal = isatty(STDOUT_FILENO) != 0;
#endif
    return terminal ? Style::Bar : Style::Lines;
}

void Progress::wrote(const QString &path)
{
    if (m_style != Style::Lines)
        return;
    const std::scoped_lock lock(m_mutex);
    std::printf("%s\n", oneLine(path).c_str());
}

void Progress::failed(const QString &gauge, const QString &reason)
{
    const std::scoped_lock lock(m_mutex);
    hideBar();
    std::fflush(stdout);
    std::fprintf(stderr, "%s: %s\n", oneLine(gauge).c_str(), oneLine(reason).c_str());
    showBar();
}

void Progress::finishedOne()
{
    const std::scoped_lock lock(m_mutex);
    ++m_done;
    showBar();
}

void Progress::finishedAll()
{
    const std::scoped_lock lock(m_mutex);
    hideBar();
    std::fflush(stdout);
}

void Progress::showBar()
{
    // What is done in a blink needs no bar.
    constexpr auto patience = std::chrono::milliseconds(300);
    if (m_style != Style::Bar || std::chrono::steady_clock::now() - m_start < patience)
        return;
    constexpr size_t width = 40;
    std::string bar(width, '-');
    std::fill_n(bar.begin(), width * m_done / m_total, '#');
    std::putchar('\r');
    m_barLength = std::printf("[%s] %zu/%zu", bar.c_str(), m_done, m_total);
    std::fflush(stdout);
}

void Progress::hideBar()
{
    if (m_barLength == 0)
        return;
    std::printf("\r%*s\r", m_barLength, "");
    m_barLength = 0;
}
