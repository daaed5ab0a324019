#pragma once

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace Tarnwick_API::Platform {

/// Tasks by due time, then by order of arrival: what a `MainQueue` keeps until its loop comes to them. Times are a
/// clock's of the queue's choice. Not thread-safe.
class TaskSchedule {
public:
    /// Since whenever the queue's clock began.
    using Time = std::chrono::nanoseconds;

    /// Adds `task`; an empty one has nothing to run and is dropped, as it would read as "none" further on.
    void add(Time due, MainQueue::Task task) {
        if (task) {
            tasks_.emplace(std::pair{due, nextNumber_++}, std::move(task));
        }
    }

    /// `delay` after `now`: a negative delay counts as none, an endless one as the end of the clock.
    [[nodiscard]] static Time dueAfter(Time now, Time delay) {
        const auto end = (Time::max)();
        return delay > end - now ? end : now + (std::max)(delay, Time::zero());
    }

    /// When the first task is due; none without a task.
    [[nodiscard]] std::optional<Time> nextDue() const {
        return tasks_.empty() ? std::nullopt : std::optional{tasks_.begin()->first.first};
    }

    /// Removes and gives the first task that is due at `now`; an empty one when none is.
    [[nodiscard]] MainQueue::Task takeDue(Time now) {
        if (tasks_.empty() || tasks_.begin()->first.first > now) {
            return {};
        }
        return std::move(tasks_.extract(tasks_.begin()).mapped());
    }

private:
    std::map<std::pair<Time, std::uint64_t>, MainQueue::Task> tasks_;
    std::uint64_t nextNumber_ = 0;
};

}  // namespace Tarnwick_API::Platform
