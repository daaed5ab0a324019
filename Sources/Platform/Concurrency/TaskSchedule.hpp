#pragma once

#include <Tarnwick_API/Platform/MainQueue.hpp>

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace Platform {

/// Tasks by due time, then by order of arrival. Not thread-safe.
class TaskSchedule {
public:
    using Time = std::chrono::nanoseconds;

    void add(Time due, MainQueue::Task task) { tasks_.emplace(std::pair{due, nextNumber_++}, std::move(task)); }

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

}  // namespace Platform
