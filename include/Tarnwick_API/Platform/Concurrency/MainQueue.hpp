#pragma once

#include <Tarnwick_API/Export.hpp>

#include <chrono>
#include <functional>
#include <memory>

namespace Tarnwick_API::Platform {

/// The one executor on which answers, retries and completion callbacks are delivered.
///
/// Which one a program gets:
/// - the one that it has given to `setMain`, before its first request. A host with an event loop of its own
///   takes one of those in `Tarnwick_API/Platform/EventLoops` (GLib, Qt, Asio), or implements the two operations, whose
///   names say when a task runs and leave it to the queue how.
/// - on macOS without that: libdispatch's main queue, which every application's event loop runs. A program without such
///   a loop (a console program, a test) asks for the built-in queue: `setMain(BuiltInMainQueue::shared())`. Nobody
///   would run its completions otherwise.
/// - elsewhere without that: `BuiltInMainQueue::shared()`, which the program runs.
/// Nothing is lost while the loop has not started, or stands still: a queue keeps its tasks in order until it runs.
///
/// Thread: both operations may be called from any thread; tasks run on the queue's own thread, one at a time.
/// Errors: a host's own queue should throw nothing, and run no task inside `soon` or `after`. A task that it throws for
/// is lost: an answer that was to come with it never comes, which the debug channel tells; a request whose next attempt
/// it was ends as not reachable, and the exception goes on to whoever runs the queue.
class TARNWICK_API_EXPORT MainQueue {
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

    /// The process-wide queue: the one given to `setMain`, or else the system's as above, always the same one.
    /// Thread: any.
    [[nodiscard]] static std::shared_ptr<MainQueue> main();

    /// Replaces the process-wide queue for requests made from now on; those on their way keep the queue they began
    /// with. None goes back to the system's.
    /// Thread: any.
    static void setMain(std::shared_ptr<MainQueue> queue);
};

}  // namespace Tarnwick_API::Platform
