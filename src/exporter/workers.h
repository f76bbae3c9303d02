#ifndef WORKERS_H
#define WORKERS_H

#include <functional>

/// Runs @a work in up to @a count threads at the same time, in fewer if the system does not allow so many, in
/// the calling thread if it allows none. Returns when all have returned.
///
/// The threads are those of Qt's global pool: Qt's raster engine spreads its work over that pool unless it
/// already runs in one of its threads. With one gauge in each thread, that only costs time.
void runInThreads(int count, const std::function<void()> &work);

/// Whether the global pool waits for a thread that could not be started. Then the application object must
/// not be destroyed, because it would wait for the pool.
[[nodiscard]] bool isPoolBlocked();

#endif
