#ifndef COMPARE_H
#define COMPARE_H

#include <functional>
#include <string>

/// The processor time that all threads of this process have used, in milliseconds.
[[nodiscard]] double processorTime();

/// Runs both functions in turn and prints a row of a Markdown table: the medians of their processor times and
/// the median of the ratios.
void compare(const std::string &work, const std::function<void()> &ours, const std::function<void()> &bare);

/// The groups of comparisons. Each prints one table.
void benchPainting();
void benchGaugeFiles();
void benchPngFiles();

#endif
