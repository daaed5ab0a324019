#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace Tarnwick_API::Platform {

/// A main queue whose clock moves only when told: retries are checked to the nanosecond and take no time.
/// For tests of the library and of applications built on it.
class TARNWICK_API_EXPORT VirtualTimeMainQueue final : public MainQueue {
public:
    VirtualTimeMainQueue();
    ~VirtualTimeMainQueue() override;

    void soon(Task task) override;
    void after(std::chrono::nanoseconds delay, Task task) override;
    [[nodiscard]] bool isOwnThread() const override;

    /// Runs what is due now, and what that adds for now, on the calling thread; the clock stands still.
    void runReady();

    /// Runs everything up to `now() + duration` in order of due time, the clock moving along.
    void advance(std::chrono::nanoseconds duration);

    /// Moves the clock from task to task until none is left. Tasks that keep adding tasks keep this going for ever.
    void runAll();

    /// Runs due tasks until `done` is true, waiting for other threads to add some; the clock stands still.
    /// Returns false when `done` is still false after `limit` of real time: a guard for a broken test, not a pause.
    bool runUntil(const std::function<bool()>& done, std::chrono::seconds limit = std::chrono::seconds{60});

    /// Time on this queue's clock since it was made.
    [[nodiscard]] std::chrono::nanoseconds now() const;

    /// The delays given to `after` so far, in order.
    [[nodiscard]] std::vector<std::chrono::nanoseconds> pausesAskedFor() const;

    /// Whether tasks wait for the clock to move.
    [[nodiscard]] bool hasDelayedTasks() const;

private:
    class TARNWICK_API_NO_EXPORT State;
    /// Kept by whoever runs it, too: a task may destroy the queue.
    std::shared_ptr<State> state_;
};

}  // namespace Tarnwick_API::Platform
