#ifndef PROGRESS_H
#define PROGRESS_H

#include <QString>

#include <chrono>
#include <cstddef>
#include <mutex>

/// Tells the user how an export goes: a bar when standard output is a terminal, elsewhere a line with each
/// file written, and on standard error a line for each gauge that failed. May be called from any thread.
class Progress
{
public:
    enum class Style { Quiet, Lines, Bar };

    /// @a total is the number of gauges.
    Progress(size_t total, Style style);

    /// The style for standard output as it is.
    [[nodiscard]] static Style styleForStandardOutput();

    void wrote(const QString &path);
    /// @a gauge is its file's name.
    void failed(const QString &gauge, const QString &reason);
    /// One gauge more is done, well or not.
    void finishedOne();
    /// Takes the bar away.
    void finishedAll();

private:
    void showBar();
    void hideBar();

    std::mutex m_mutex;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    size_t m_total;
    size_t m_done = 0;
    int m_barLength = 0;
    Style m_style;
};

#endif
