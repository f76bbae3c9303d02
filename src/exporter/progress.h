#ifndef PROGRESS_H
#define PROGRESS_H

#include <QString>

#include <chrono>
#include <cstddef>
#include <mutex>
#include <string>

/// Tells the user about the progress of an export: on standard output with a line for each file written, or
/// a bar and a summary; on standard error with a line for each gauge that failed. Thread-safe.
class Progress
{
public:
    enum class Style { Quiet, Lines, Bar };

    /// @a gaugeCount is the number of gauges to export.
    Progress(size_t gaugeCount, Style style);

    void wrote(const QString &path);
    /// @a gauge is the name of its file.
    void failed(const QString &gauge, const QString &reason);
    /// One more gauge was exported or failed.
    void finishedGauge();
    /// Replaces the bar by the summary. Returns false if lines could not be printed.
    [[nodiscard]] bool finish();

private:
    void printLine(const std::string &line);
    void showBar();
    void hideBar();

    std::mutex m_mutex;
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    size_t m_gaugeCount;
    size_t m_finishedCount = 0;
    size_t m_failedCount = 0;
    size_t m_writtenCount = 0;
    int m_barLength = 0;
    QString m_printError; ///< Why a line was not printed; only the first reason.
    Style m_style;
};

#endif
