#include "compare.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

double processorTime()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

namespace {

double median(std::vector<double> values)
{
    std::ranges::sort(values);
    return values.at(values.size() / 2);
}

/// Milliseconds for each of @a count runs.
double timeOf(const std::function<void()> &work, int count)
{
    const double start = processorTime();
    for (int i = 0; i < count; ++i)
        work();
    return (processorTime() - start) / count;
}

} // namespace

void compare(const std::string &work, const std::function<void()> &ours, const std::function<void()> &bare)
{
    constexpr int rounds = 11;
    constexpr double roundTime = 20.0;
    bare(); // fills Qt's caches
    const int count = std::max(1, static_cast<int>(roundTime / timeOf(bare, 1)));
    std::vector<double> ourTimes;
    std::vector<double> bareTimes;
    std::vector<double> ratios;
    for (int round = 0; round < rounds; ++round) {
        ourTimes.push_back(timeOf(ours, count));
        bareTimes.push_back(timeOf(bare, count));
        ratios.push_back(ourTimes.back() / bareTimes.back());
    }
    std::printf("| %s | %.3f | %.3f | %.2f |\n", work.c_str(), median(ourTimes), median(bareTimes),
                median(ratios));
    std::fflush(stdout);
}
