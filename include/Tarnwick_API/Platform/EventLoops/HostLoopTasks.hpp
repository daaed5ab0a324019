#pragma once

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/TaskSchedule.hpp>

#include <algorithm>
#include <chrono>
#include <exception>
#include <mutex>
#include <utility>

namespace Tarnwick_API::Platform {

/// The tasks of a main queue that a host's event loop runs: which one is next, and when the loop has to come for it.
/// An adapter says how its loop is woken, and calls `runNext` whenever the loop comes.
///
/// The loop comes once per task, so that the host's own events get their turn in between, a nested loop goes on with
/// the tasks behind the one that runs it, and a task that throws leaves the next ones in their places. Lifetime: kept
/// alive by the call of `runNext`, as a task may destroy its queue. Thread: any; `runNext` on the loop's own.
class HostLoopTasks {
public:
    HostLoopTasks() = default;
    HostLoopTasks(const HostLoopTasks&) = delete;
    HostLoopTasks& operator=(const HostLoopTasks&) = delete;
    virtual ~HostLoopTasks() = default;

    /// Adds `task`, to be run when `delay` has passed. One that comes after `close` is left to the caller.
    void add(std::chrono::nanoseconds delay, MainQueue::Task&& task) {
        const std::lock_guard lock{mutex_};
        if (closed_) {
            return;
        }
        const auto nextBefore = schedule_.nextDue();
        schedule_.add(TaskSchedule::dueAfter(now(), delay), std::move(task));
        if (!called_ && schedule_.nextDue() != nextBefore) {
            called_ = true;
            callLoop();
        }
    }

    /// Runs the next task if one is due.
    void runNext() {
        if (const auto task = takeDue()) {
            task();
        }
    }

    /// The same for a loop that exceptions must not pass through: one thrown by the task ends the program.
    void runNextOrTerminate() noexcept {
        try {
            runNext();
        } catch (...) {
            // Caught, as `std::terminate` then tells what was thrown.
            std::terminate();
        }
    }

    /// Destroys the tasks that have not run, and refuses others from now on. None of the virtual operations is called
    /// afterwards.
    void close() {
        TaskSchedule unrun;
        const std::lock_guard lock{mutex_};
        if (!closed_) {
            closed_ = true;
            std::swap(unrun, schedule_);
            leaveLoop();
        }
    }

protected:
    /// Has the loop come as soon as it can. Called from any thread.
    virtual void callLoop() = 0;

    /// Has the loop come after `delay`, instead of when it was told before. Called on the loop's own thread.
    virtual void callLoopAfter(std::chrono::nanoseconds delay) = 0;

    /// The tasks are closed: takes back what the loop holds for them.
    virtual void leaveLoop() {}

    /// Holds off the virtual operations, and with them the end of the loop.
    [[nodiscard]] std::unique_lock<std::mutex> lockTasks() const { return std::unique_lock{mutex_}; }

private:
    /// A loop counts in a unit of its own, in which an endless delay has no place.
    static constexpr std::chrono::nanoseconds longestDelay = std::chrono::hours{24};

    [[nodiscard]] static std::chrono::nanoseconds now() { return std::chrono::steady_clock::now().time_since_epoch(); }

    [[nodiscard]] MainQueue::Task takeDue() {
        const std::lock_guard lock{mutex_};
        called_ = false;
        const auto time = now();
        auto task = schedule_.takeDue(time);
        if (const auto next = schedule_.nextDue()) {
            called_ = *next <= time;
            callLoopAfter(called_ ? std::chrono::nanoseconds{0} : (std::min)(*next - time, longestDelay));
        }
        return task;
    }

    mutable std::mutex mutex_;
    TaskSchedule schedule_;
    bool called_ = false;
    bool closed_ = false;
};

}  // namespace Tarnwick_API::Platform
