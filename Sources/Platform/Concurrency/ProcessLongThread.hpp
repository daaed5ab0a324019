#pragma once

#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Concurrency/ThreadSignals.hpp>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace Tarnwick_API::Platform {

/// The process's one thread for a `Worker`, from the first call of `worker` until the process exits (a return from
/// `main`, or `exit`).
///
/// The worker has two operations: `run`, the work of the thread, and `stop`, which any thread may call and after which
/// `run` comes to its end. It is made before its thread and never destroyed, as other threads may still call it while
/// the process exits. An exit handler stops and joins the thread. It is registered when the worker has been made, so
/// that it runs before the handlers of libraries that the worker's constructor has set up, and before static objects
/// made earlier are destroyed. Signals are left to the host's threads. A process that leaves by other ways (`_exit`, a
/// signal) takes the thread with it as any other.
///
/// A child of `fork` does not have the thread, and never gets one if its parent had begun to start it: what the worker
/// was at is torn, its locks may be held for ever, and its descriptors are the parent's. There the exit handler does
/// nothing. A child whose parent had not begun is a process like any other.
template <typename Worker>
class ProcessLongThread {
public:
    ProcessLongThread() = delete;

    /// The worker, its thread started if need be. Throws what the worker's constructor throws, std::system_error,
    /// std::runtime_error or std::bad_alloc when that can't be; the next call tries again. Thread: any.
    [[nodiscard]] static Worker& worker() {
        if (isLost()) {
            throw std::runtime_error{"a child of fork has not the threads of its parent"};
        }
        auto* const running = worker_.load(std::memory_order_acquire);
        return running != nullptr ? *running : start();
    }

    /// Whether the thread stays behind in a parent of this process: nothing of the worker may be touched then.
    [[nodiscard]] static bool isLost() noexcept { return losses_.isLost(); }

    /// The worker, if it has been started and is this process's. Thread: any.
    [[nodiscard]] static Worker* running() noexcept {
        return isLost() ? nullptr : worker_.load(std::memory_order_acquire);
    }

private:
    struct State {
        /// Held while the thread starts: an exit that another thread begins meanwhile waits, and then stops it.
        std::mutex mutex;
        bool hasExitHandler = false;
        std::thread thread;
    };

    [[nodiscard]] static State& state() {
        static auto& state = *std::make_unique<State>().release();
        return state;
    }

    [[nodiscard]] static Worker& start() {
        losses_.noteStart();
        auto& self = state();
        const std::lock_guard lock{self.mutex};
        if (auto* const running = worker_.load(std::memory_order_relaxed)) {
            return *running;
        }
        auto owner = std::make_unique<Worker>();
        if (!self.hasExitHandler && std::atexit(&ProcessLongThread::end) != 0) {
            throw std::runtime_error{"no room for an exit handler"};
        }
        self.hasExitHandler = true;
        self.thread = threadWithoutSignals([&worker = *owner] { worker.run(); });
        auto& running = *owner.release();
        worker_.store(&running, std::memory_order_release);
        return running;
    }

    static void end() {
        if (isLost()) {
            return;
        }
        auto& self = state();
        const std::lock_guard lock{self.mutex};
        // A thread that is started later, by another exit handler, needs a new one.
        self.hasExitHandler = false;
        auto* const running = worker_.load(std::memory_order_relaxed);
        if (running == nullptr) {
            return;
        }
        running->stop();
        // The thread itself may have called `exit`.
        if (self.thread.get_id() != std::this_thread::get_id()) {
            self.thread.join();
        }
    }

    static inline ForkLosses losses_;
    static inline std::atomic<Worker*> worker_ = nullptr;
};

}  // namespace Tarnwick_API::Platform
