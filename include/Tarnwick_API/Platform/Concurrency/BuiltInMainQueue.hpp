#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <functional>
#include <memory>

namespace Tarnwick_API::Platform {

/// A main queue for programs without an event loop: the thread that calls `run` becomes the main thread. A task may
/// destroy the queue, which ends the run.
class TARNWICK_API_EXPORT BuiltInMainQueue final : public MainQueue {
public:
    BuiltInMainQueue();
    ~BuiltInMainQueue() override;

    void soon(Task task) override;
    void after(std::chrono::nanoseconds delay, Task task) override;
    [[nodiscard]] bool isOwnThread() const override;

    /// Runs tasks on the calling thread, waiting for more, until `stop` is called.
    /// An exception thrown by a task leaves `run`; the task is gone and `run` may be called again.
    void run();

    /// Runs tasks on the calling thread until `done`, asked before each task, is true or `stop` is called.
    void runUntil(const std::function<bool()>& done);

    /// Ends the running `run` or `runUntil`, or the next one if none is running. Tasks not yet run stay queued.
    /// Thread: any.
    void stop();

    /// The one of the process. `MainQueue::main` gives it when the program has installed none, but on macOS only when
    /// it is installed by `MainQueue::setMain`. A process that has used it without installing it, and ends by itself
    /// without ever having run one, is told so in a line on the standard error stream.
    [[nodiscard]] static std::shared_ptr<BuiltInMainQueue> shared();

private:
    class TARNWICK_API_NO_EXPORT State;
    /// Kept by whoever runs it, too: a task may destroy the queue.
    std::shared_ptr<State> state_;
};

}  // namespace Tarnwick_API::Platform
