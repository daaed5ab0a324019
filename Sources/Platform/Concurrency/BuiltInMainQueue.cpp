#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

#include <Tarnwick_API/Platform/Concurrency/TaskSchedule.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Concurrency/QueueThread.hpp>
#include <Platform/Concurrency/UnrunMainQueue.hpp>

#include <condition_variable>
#include <mutex>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

std::chrono::nanoseconds steadyNow() {
    return std::chrono::steady_clock::now().time_since_epoch();
}

}  // namespace

class BuiltInMainQueue::State {
public:
    QueueThread thread;

    void add(std::chrono::nanoseconds due, Task task) {
        {
            const std::lock_guard lock{mutex_};
            if (closed_) {
                return;
            }
            schedule_.add(due, std::move(task));
        }
        changed_.notify_one();
    }

    /// Destroys the tasks that have not run. What they hand over meanwhile is refused.
    void close() {
        TaskSchedule unrun;
        const std::lock_guard lock{mutex_};
        closed_ = true;
        std::swap(unrun, schedule_);
        changed_.notify_all();
    }

    void stop() {
        {
            const std::lock_guard lock{mutex_};
            stopped_ = true;
        }
        changed_.notify_one();
    }

    /// The next task, waited for; an empty one when the queue was stopped, or destroyed.
    Task waitForNext() {
        std::unique_lock lock{mutex_};
        while (!closed_) {
            if (stopped_) {
                stopped_ = false;
                return {};
            }
            if (auto task = schedule_.takeDue(steadyNow())) {
                return task;
            }
            if (const auto due = schedule_.nextDue()) {
                changed_.wait_until(lock, std::chrono::steady_clock::time_point{*due});
            } else {
                changed_.wait(lock);
            }
        }
        return {};
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::inner, &changed_};
    TaskSchedule schedule_;
    bool stopped_ = false;
    bool closed_ = false;
};

BuiltInMainQueue::BuiltInMainQueue() : state_{std::make_shared<State>()} {
}

BuiltInMainQueue::~BuiltInMainQueue() {
    state_->close();
}

void BuiltInMainQueue::soon(Task task) {
    state_->add(steadyNow(), std::move(task));
}

bool BuiltInMainQueue::isOwnThread() const {
    return state_->thread.isCurrent();
}

void BuiltInMainQueue::after(std::chrono::nanoseconds delay, Task task) {
    state_->add(TaskSchedule::dueAfter(steadyNow(), delay), std::move(task));
}

void BuiltInMainQueue::run() {
    runUntil([] { return false; });
}

void BuiltInMainQueue::runUntil(const std::function<bool()>& done) {
    const auto state = state_;
    state->thread.note();
    UnrunMainQueue::noteRun();
    while (!done()) {
        const auto task = state->waitForNext();
        if (!task) {
            return;
        }
        task();
    }
}

void BuiltInMainQueue::stop() {
    state_->stop();
}

std::shared_ptr<BuiltInMainQueue> BuiltInMainQueue::shared() {
    // Never destroyed: other threads may still hand over tasks while the process exits.
    static auto& queue =
        *std::make_unique<std::shared_ptr<BuiltInMainQueue>>(std::make_shared<BuiltInMainQueue>()).release();
    return queue;
}

}  // namespace Tarnwick_API::Platform
