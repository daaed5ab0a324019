#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace Tarnwick_API::Platform {

/// The one executor on which answers, retries and completion callbacks are delivered.
///
/// A host with an event loop of its own (Qt, GLib, Cocoa) implements the two operations, whose names say when a task
/// runs and leave it to the queue how, and installs its queue with `setMain` before the first request. A program
/// without one runs a `BuiltInMainQueue`.
/// Thread: both operations may be called from any thread; tasks run on the queue's own thread, one at a time.
class MainQueue {
public:
    /// What is run; an empty one is dropped.
    using Task = std::function<void()>;

    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue() = default;

    /// Runs `task` once, after the tasks handed over before it. It must not call `fork`, which waits for the threads
    /// that hand tasks over. Lifetime: the queue owns `task` until it has run; a queue destroyed first drops it unrun.
    virtual void soon(Task task) = 0;

    /// Runs `task` once, not before `delay` has passed on this queue's clock. Nothing waits or sleeps meanwhile.
    /// Equal due times run first come, first served.
    virtual void after(std::chrono::nanoseconds delay, Task task) = 0;

    /// Whether the calling thread is the one that tasks run on, so that a wait for a task would never end. A queue that
    /// can't tell says no, and such a wait is then not refused. Thread: any.
    [[nodiscard]] virtual bool isOwnThread() const { return false; }

    /// The process-wide queue: the one given to `setMain`, or else `BuiltInMainQueue::shared()`.
    /// Thread: any.
    [[nodiscard]] static std::shared_ptr<MainQueue> main();

    /// Replaces the process-wide queue for requests made from now on; those on their way keep the queue they began
    /// with. None goes back to the built-in queue.
    /// Thread: any.
    static void setMain(std::shared_ptr<MainQueue> queue);
};

}  // namespace Tarnwick_API::Platform
