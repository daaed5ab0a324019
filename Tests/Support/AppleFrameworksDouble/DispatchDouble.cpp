#include "AppleFrameworksDouble.hpp"
#include "DoubleState.hpp"

#include <algorithm>
#include <utility>

#include <dispatch/dispatch.h>
#include <gtest/gtest.h>

namespace {

/// A program's own time of the system, which began long ago.
constexpr std::uint64_t start = 1'000'000'000;

struct Work {
    void* context;
    dispatch_function_t function;
};

std::uint64_t now = start;
std::list<Work> queued;
std::map<std::uint64_t, std::list<Work>> timers;

dispatch_queue_t mainQueue() {
    static char queue;
    return reinterpret_cast<dispatch_queue_t>(&queue);
}

void runQueued() {
    while (!queued.empty()) {
        const auto work = queued.front();
        queued.pop_front();
        work.function(work.context);
    }
}

}  // namespace

namespace AppleFrameworksDouble {

void runDispatchMainQueue(std::chrono::nanoseconds time) {
    const auto end = now + static_cast<std::uint64_t>(time.count());
    runQueued();
    while (!timers.empty() && timers.begin()->first <= end) {
        now = std::max(now, timers.begin()->first);
        queued.splice(queued.end(), timers.extract(timers.begin()).mapped());
        runQueued();
    }
    now = end;
}

bool forgetDispatchedWork() {
    const auto forgottenQueue = std::exchange(queued, {});
    const auto forgottenTimers = std::exchange(timers, {});
    return !forgottenQueue.empty() || !forgottenTimers.empty();
}

}  // namespace AppleFrameworksDouble

dispatch_queue_t dispatch_get_main_queue() {
    return mainQueue();
}

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta) {
    EXPECT_EQ(when, DISPATCH_TIME_NOW);
    EXPECT_GE(delta, 0) << "a time that has passed";
    const auto end = now + static_cast<std::uint64_t>(delta);
    constexpr std::uint64_t lastTime = (std::uint64_t{1} << 62U) - 1;
    return end > lastTime ? DISPATCH_TIME_FOREVER : end;
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) {
    EXPECT_EQ(queue, mainQueue());
    queued.push_back({context, work});
}

void dispatch_after_f(dispatch_time_t when, dispatch_queue_t queue, void* context, dispatch_function_t work) {
    EXPECT_EQ(queue, mainQueue());
    ASSERT_NE(when, DISPATCH_TIME_FOREVER) << "its context would never come back";
    timers[when].push_front({context, work});
}
