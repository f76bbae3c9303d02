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

/// The number of threads that the limit of open files leaves room for.
int maxThreadCount(int count)
{
#ifndef Q_OS_WIN
    constexpr rlim_t reserved = 32;
    constexpr rlim_t filesPerThread = 4; // two for the thread's event loop, a gauge or output, a font
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY) {
        const rlim_t room = limit.rlim_cur > reserved ? (limit.rlim_cur - reserved) / filesPerThread : 0;
        return static_cast<int>(std::clamp<rlim_t>(room, 1, static_cast<rlim_t>(count)));
    }
#endif
    return count;
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
