#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>

#include <Tarnwick_API/Platform/Concurrency/TaskSchedule.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Concurrency/QueueThread.hpp>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace Tarnwick_API::Platform {

class VirtualTimeMainQueue::State {
public:
    QueueThread thread;

    void add(std::chrono::nanoseconds delay, Task task) {
        {
            const std::lock_guard lock{mutex_};
            if (closed_) {
                return;
            }
            schedule_.add(TaskSchedule::dueAfter(now_, delay), std::move(task));
        }
        added_.notify_one();
    }

    /// Destroys the tasks that have not run. What they hand over meanwhile is refused.
    void close() {
        TaskSchedule unrun;
        const std::lock_guard lock{mutex_};
        closed_ = true;
        std::swap(unrun, schedule_);
        added_.notify_all();
    }

    void addDelayed(std::chrono::nanoseconds delay, Task task) {
        {
            const std::lock_guard lock{mutex_};
            pauses_.push_back(delay);
        }
        add(delay, std::move(task));
    }

    void runReady() {
        thread.note();
        while (const auto task = takeReady()) {
            task();
        }
    }

    Task waitForReady(std::chrono::steady_clock::time_point limit) {
        std::unique_lock lock{mutex_};
        Task task;
        added_.wait_until(lock, limit, [&] { return closed_ || (task = schedule_.takeDue(now_)); });
        return task;
    }

    /// Moves the clock to the next due time, or to `limit` when that comes first; false when nothing is due by then.
    bool moveToNext(std::optional<std::chrono::nanoseconds> limit) {
        const std::lock_guard lock{mutex_};
        const auto due = schedule_.nextDue();
        if (!due || (limit && *due > *limit)) {
            now_ = std::max(now_, limit.value_or(now_));
            return false;
        }
        now_ = std::max(now_, *due);
        return true;
    }

    std::chrono::nanoseconds now() const {
        const std::lock_guard lock{mutex_};
        return now_;
    }

    std::vector<std::chrono::nanoseconds> pauses() const {
        const std::lock_guard lock{mutex_};
        return pauses_;
    }

    bool hasDelayed() const {
        const std::lock_guard lock{mutex_};
        const auto due = schedule_.nextDue();
        return due && *due > now_;
    }

private:
    Task takeReady() {
        const std::lock_guard lock{mutex_};
        return schedule_.takeDue(now_);
    }

    mutable std::mutex mutex_;
    std::condition_variable added_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::inner, &added_};
    TaskSchedule schedule_;
    bool closed_ = false;
    std::chrono::nanoseconds now_{0};
    std::vector<std::chrono::nanoseconds> pauses_;
};

VirtualTimeMainQueue::VirtualTimeMainQueue() : state_{std::make_shared<State>()} {
}

VirtualTimeMainQueue::~VirtualTimeMainQueue() {
    state_->close();
}

void VirtualTimeMainQueue::soon(Task task) {
    state_->add(std::chrono::nanoseconds{0}, std::move(task));
}

bool VirtualTimeMainQueue::isOwnThread() const {
    return state_->thread.isCurrent();
}

void VirtualTimeMainQueue::after(std::chrono::nanoseconds delay, Task task) {
    state_->addDelayed(delay, std::move(task));
}

void VirtualTimeMainQueue::runReady() {
    const auto state = state_;
    state->runReady();
}

void VirtualTimeMainQueue::advance(std::chrono::nanoseconds duration) {
    const auto state = state_;
    const auto end = TaskSchedule::dueAfter(state->now(), duration);
    while (state->moveToNext(end)) {
        state->runReady();
    }
}

void VirtualTimeMainQueue::runAll() {
    const auto state = state_;
    while (state->moveToNext(std::nullopt)) {
        state->runReady();
    }
}

bool VirtualTimeMainQueue::runUntil(const std::function<bool()>& done, std::chrono::seconds limit) {
    const auto state = state_;
    state->thread.note();
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        const auto task = state->waitForReady(end);
        if (!task) {
            return done();
        }
        task();
    }
    return true;
}

std::chrono::nanoseconds VirtualTimeMainQueue::now() const {
    return state_->now();
}

std::vector<std::chrono::nanoseconds> VirtualTimeMainQueue::pausesAskedFor() const {
    return state_->pauses();
}

bool VirtualTimeMainQueue::hasDelayedTasks() const {
    return state_->hasDelayed();
}

}  // namespace Tarnwick_API::Platform
