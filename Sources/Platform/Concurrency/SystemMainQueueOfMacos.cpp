#include <Platform/Concurrency/SystemMainQueue.hpp>

#include <Tarnwick_API/Platform/Concurrency/TaskSchedule.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Concurrency/QueueThread.hpp>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

#include <dispatch/dispatch.h>

namespace Tarnwick_API::Platform {

namespace {

using Time = TaskSchedule::Time;

Time steadyNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

/// libdispatch's main queue, which every application's event loop runs. Never destroyed, as the system's own is not.
class DispatchMainQueue final : public MainQueue {
public:
    void soon(Task task) override {
        if (task) {
            dispatch_async_f(dispatch_get_main_queue(), std::make_unique<Soon>(Soon{*this, std::move(task)}).release(),
                             &run);
        }
    }

    void after(Time delay, Task task) override {
        if (!task) {
            return;
        }
        const auto wait = std::clamp(delay, Time::zero(), longestWait);
        auto later = std::make_unique<Later>(Later{*this, TaskSchedule::dueAfter(steadyNow(), wait)});
        {
            const std::lock_guard lock{mutex_};
            schedule_.add(later->due, std::move(task));
        }
        dispatch_after_f(dispatch_time(DISPATCH_TIME_NOW, wait.count()), dispatch_get_main_queue(), later.release(),
                         &runDue);
    }

    [[nodiscard]] bool isOwnThread() const override { return thread_.isCurrent(); }

private:
    struct Soon {
        DispatchMainQueue& queue;
        Task task;
    };
    struct Later {
        DispatchMainQueue& queue;
        Time due;
    };

    /// For longer ones the system knows no time, and would never take its context back.
    static constexpr Time longestWait = std::chrono::hours{24 * 365 * 100};

    static void run(void* context) {
        const std::unique_ptr<Soon> soon{static_cast<Soon*>(context)};
        soon->queue.thread_.note();
        soon->task();
    }

    /// Runs everything that is due, as the system promises no order among its timers. What the timer was set for is due
    /// by that, even if the clock here is a moment behind the system's.
    static void runDue(void* context) {
        const std::unique_ptr<Later> later{static_cast<Later*>(context)};
        auto& queue = later->queue;
        queue.thread_.note();
        while (const auto task = queue.takeDue(std::max(later->due, steadyNow()))) {
            task();
        }
    }

    Task takeDue(Time now) {
        const std::lock_guard lock{mutex_};
        return schedule_.takeDue(now);
    }

    QueueThread thread_;
    std::mutex mutex_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::inner};
    TaskSchedule schedule_;
};

}  // namespace

std::shared_ptr<MainQueue> systemMainQueue() {
    static auto& queue = *std::make_unique<std::shared_ptr<MainQueue>>(std::make_shared<DispatchMainQueue>()).release();
    return queue;
}

}  // namespace Tarnwick_API::Platform
