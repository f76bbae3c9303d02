#include "exporter/workers.h"

#include <QSemaphore>
#include <QThreadPool>

#include <algorithm>
#include <atomic>
#include <memory>
#include <system_error>
#include <thread>

#ifndef Q_OS_WIN
#include <sys/resource.h>
#endif

namespace {

std::atomic<bool> poolIsBlocked = false;

#ifndef Q_OS_WIN
/// How many threads a limit of the system allows. At least one.
rlim_t threadsWithin(decltype(RLIMIT_AS) resource, rlim_t reserved, rlim_t perThread)
{
    rlimit limit{};
    if (getrlimit(resource, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY)
        return RLIM_INFINITY;
    return limit.rlim_cur > reserved + perThread ? (limit.rlim_cur - reserved) / perThread : 1;
}
#endif

/// The number of threads to start. Libraries end the program when a thread finds no free file descriptor or
/// no memory for its stack and heap.
int maxThreadCount(int count)
{
#ifdef Q_OS_WIN
    return count;
#else
    constexpr rlim_t MiB = rlim_t(1024) * 1024;
    // Two files for the thread's event loop, a gauge or output, a font.
    const rlim_t byFiles = threadsWithin(RLIMIT_NOFILE, 32, 4);
    const rlim_t byMemory = threadsWithin(RLIMIT_AS, 192 * MiB, 128 * MiB);
    return static_cast<int>(std::min({byFiles, byMemory, static_cast<rlim_t>(count)}));
#endif
}

/// QThreadPool does not report that a thread cannot be started. std::thread does.
bool canStartThread()
{
    try {
        std::thread([] {}).join();
        return true;
    } catch (const std::system_error &) {
        return false;
    }
}

/// Starts @a work in a thread of the pool. Returns false if the thread does not run after a long time: then
/// the work is not done.
bool startInPool(const std::function<void()> &work)
{
    enum State { Waiting, Running, Abandoned };
    struct Start
    {
        std::atomic<State> state = Waiting;
        QSemaphore isRunning;
    };
    const auto start = std::make_shared<Start>();
    QThreadPool::globalInstance()->start([start, work] {
        State expected = Waiting;
        if (!start->state.compare_exchange_strong(expected, Running))
            return;
        start->isRunning.release();
        work();
    });
    constexpr int timeout = 10'000; // milliseconds
    if (start->isRunning.tryAcquire(1, timeout))
        return true;
    State expected = Waiting;
    return !start->state.compare_exchange_strong(expected, Abandoned);
}

} // namespace

void runInThreads(int count, const std::function<void()> &work)
{
    const int maxCount = maxThreadCount(count);
    QThreadPool::globalInstance()->setMaxThreadCount(maxCount);
    QSemaphore finished;
    int started = 0;
    // One after the other: each thread that runs counts towards the system's limit.
    while (started < maxCount && canStartThread()) {
        if (!startInPool([&finished, &work] {
                work();
                finished.release();
            })) {
            // Another process took the last free thread in the meantime.
            poolIsBlocked = true;
            break;
        }
        ++started;
    }
    finished.acquire(started);
    if (started == 0)
        work();
}

bool isPoolBlocked()
{
    return poolIsBlocked;
}
