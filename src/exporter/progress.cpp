#include "exporter/progress.h"

#include "tools/terminal.h"

#include <algorithm>
#include <cstdio>
#include <string>

namespace {

std::string counted(size_t count, const char *what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

} // namespace

Progress::Progress(size_t gaugeCount, Style style)
    : m_gaugeCount(gaugeCount)
    , m_style(style)
{
}

void Progress::wrote(const QString &path)
{
    const std::scoped_lock lock(m_mutex);
    ++m_writtenCount;
    if (m_style == Style::Lines)
        printLine(maskControlCharacters(path));
}

void Progress::failed(const QString &gauge, const QString &reason)
{
    const std::scoped_lock lock(m_mutex);
    ++m_failedCount;
    hideBar();
    std::fprintf(stderr, "%s: %s\n", maskControlCharacters(gauge).c_str(),
                 maskControlCharacters(reason).c_str());
    showBar();
}

void Progress::finishedGauge()
{
    const std::scoped_lock lock(m_mutex);
    ++m_finishedCount;
    showBar();
}

bool Progress::finish()
{
    const std::scoped_lock lock(m_mutex);
    if (m_style == Style::Bar) {
        hideBar();
        const std::string failures =
            m_failedCount == 0 ? std::string() : ", " + counted(m_failedCount, "gauge") + " failed";
        printLine(counted(m_writtenCount, "file") + " written" + failures);
    }
    if (m_printError.isEmpty())
        return true;
    std::fprintf(stderr, "corvalence-export: %s\n", qUtf8Printable(m_printError));
    return false;
}

void Progress::printLine(const std::string &line)
{
    if (m_printError.isEmpty())
        m_printError = writeStandardOutput(QByteArray::fromStdString(line + '\n'));
}

void Progress::showBar()
{
    // No bar for runs under 300 ms.
    constexpr auto delay = std::chrono::milliseconds(300);
    if (m_style != Style::Bar || std::chrono::steady_clock::now() - m_start < delay)
        return;
    const std::string count = std::to_string(m_finishedCount) + '/' + std::to_string(m_gaugeCount);
    constexpr int maxWidth = 40;
    constexpr int brackets = 3; // and a space
    // The last column stays empty: some terminals begin a new line after it.
    const int available = terminalWidth() - 1 - static_cast<int>(count.size());
    if (available < 0)
        return;
    std::string line = count;
    if (available > brackets) {
        const auto width = static_cast<size_t>(std::min(maxWidth, available - brackets));
        const size_t filled = width * m_finishedCount / m_gaugeCount;
        line = '[' + std::string(filled, '#') + std::string(width - filled, '-') + "] " + count;
    }
    m_barLength = std::printf("\r%s", line.c_str()) - 1;
    std::fflush(stdout);
}

void Progress::hideBar()
{
    if (m_barLength == 0)
        return;
    std::printf("\r%*s\r", m_barLength, "");
    std::fflush(stdout);
    m_barLength = 0;
}
