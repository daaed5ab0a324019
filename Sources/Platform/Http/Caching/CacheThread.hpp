#pragma once

#include <Tarnwick_API/Platform/Concurrency/MoveOnlyFunction.hpp>

#include <Platform/Concurrency/ProcessLongThread.hpp>

#include <condition_variable>
#include <deque>
#include <mutex>

namespace Tarnwick_API::Platform {

/// The process's one thread for work with caches, so that waiting for a disk holds up neither the main queue nor the
/// transfers. It works in order: what a response stores is there for every request made after its answer was
/// delivered.
///
/// Life: a `ProcessLongThread` that starts with the first request that has a cache. At exit it finishes what it is at,
/// so that a short-lived program too keeps every answer that was delivered; what waits is abandoned, neither done nor
/// destroyed, as it is by the I/O thread.
class CacheThread {
public:
    using Job = MoveOnlyFunction<void()>;

    /// The thread, started if need be. Throws std::system_error, std::runtime_error or std::bad_alloc when it can't be;
    /// the next call tries again. Thread: any.
    [[nodiscard]] static CacheThread& shared();

    /// For `shared`, which starts the thread. Throws std::runtime_error when no digest can be computed.
    CacheThread();

    /// Does `job` after those handed over before. Thread: any.
    void push(Job job);

private:
    friend class ProcessLongThread<CacheThread>;

    void run();
    void stop();

    std::mutex mutex_;
    std::condition_variable hasWork_;
    std::deque<Job> jobs_;
    bool isStopping_ = false;
};

}  // namespace Tarnwick_API::Platform
