#pragma once

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Testing {

/// What holds for every main queue. `Loop` has the `queue`, a shared pointer, `run` until `stop`, which a task calls.
template <typename Loop>
class MainQueueContract : public testing::Test {
protected:
    using MainQueue = Tarnwick_API::Platform::MainQueue;

    MainQueue::Task task(const std::string& name) {
        return [this, name] { ran.push_back(name); };
    }

    MainQueue::Task stop() {
        return [this] { loop.stop(); };
    }

    static void spinUntil(std::chrono::steady_clock::time_point time) {
        while (std::chrono::steady_clock::now() < time) {
        }
    }

    Loop loop;
    std::vector<std::string> ran;
};

TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, RunsTasksInOrderAndDelayedOnesNotBeforeTheirTime) {
    using namespace std::chrono_literals;
    const auto begin = std::chrono::steady_clock::now();
    auto& queue = *this->loop.queue;
    queue.after(20ms, this->task("second"));
    queue.after(20ms, this->stop());
    queue.after(1h, this->task("never"));
    queue.after(std::chrono::nanoseconds::max(), this->task("endless"));
    queue.soon({});
    queue.after(10ms, this->task("first"));
    queue.soon(this->task("soon"));
    queue.after(-1h, this->task("overdue"));
    this->loop.run();
    EXPECT_THAT(this->ran, testing::ElementsAre("soon", "overdue", "first", "second"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms);
}

TYPED_TEST_P(MainQueueContract, RunsTasksByDueTimeAfterATaskThatTookLong) {
    using namespace std::chrono_literals;
    auto& queue = *this->loop.queue;
    queue.soon([&] {
        queue.after(2ms, this->task("second"));
        queue.after(1ms, this->task("first"));
        this->spinUntil(std::chrono::steady_clock::now() + 4ms);
        queue.soon(this->task("third"));
        queue.soon(this->stop());
    });
    this->loop.run();
    EXPECT_THAT(this->ran, testing::ElementsAre("first", "second", "third"));
}

TYPED_TEST_P(MainQueueContract, WaitsOnAnEndlessDelayUntilAnotherThreadComesWithAnEarlierTask) {
    using namespace std::chrono_literals;
    auto& queue = *this->loop.queue;
    queue.after(std::chrono::nanoseconds::max(), this->task("endless"));
    std::jthread other;
    queue.after(1ms, [&] {
        other = std::jthread{[&] {
            queue.after(1h, this->task("never"));
            queue.after(2ms, this->stop());
        }};
    });
    this->loop.run();
    EXPECT_TRUE(this->ran.empty());
}

TYPED_TEST_P(MainQueueContract, RunsTasksOfManyThreadsOneByOneOnItsOwn) {
    constexpr int perThread = 500;
    const auto queueThread = std::this_thread::get_id();
    auto& queue = *this->loop.queue;
    std::vector<std::vector<int>> seen(4);
    int total = 0;
    std::vector<std::jthread> threads;
    threads.reserve(seen.size());
    for (auto& ofThread : seen) {
        threads.emplace_back([&] {
            EXPECT_FALSE(queue.isOwnThread());
            for (int number = 0; number < perThread; ++number) {
                queue.soon([&, number] {
                    EXPECT_EQ(std::this_thread::get_id(), queueThread);
                    EXPECT_TRUE(queue.isOwnThread());
                    ofThread.push_back(number);
                    if (++total == 4 * perThread) {
                        this->loop.stop();
                    }
                });
            }
        });
    }
    this->loop.run();
    for (const auto& ofThread : seen) {
        EXPECT_TRUE(std::ranges::is_sorted(ofThread)) << "a thread's tasks run in the order it handed them over";
    }
}

TYPED_TEST_P(MainQueueContract, StoppedKeepsTheTasksForTheNextRun) {
    auto& queue = *this->loop.queue;
    queue.soon(this->stop());
    queue.soon(this->task("a"));
    queue.soon(this->stop());
    this->loop.run();
    EXPECT_TRUE(this->ran.empty());
    this->loop.run();
    EXPECT_THAT(this->ran, testing::ElementsAre("a"));
}

TYPED_TEST_P(MainQueueContract, DropsUnrunTasksWithTheQueue) {
    const auto owned = std::make_shared<int>();
    auto& queue = this->loop.queue;
    // Destroyed, a task may have something to hand over.
    const auto handOver = [&queue = *queue, owned](void*) { queue.soon([owned] {}); };
    queue->soon([handingOver = std::shared_ptr<void>{nullptr, handOver}] {});
    queue->after(std::chrono::hours{1}, [owned] {});
    EXPECT_GE(owned.use_count(), 3);
    queue.reset();
    EXPECT_EQ(owned.use_count(), 2) << "held by this test alone";
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, RunsTasksInOrderAndDelayedOnesNotBeforeTheirTime,
                            RunsTasksByDueTimeAfterATaskThatTookLong,
                            WaitsOnAnEndlessDelayUntilAnotherThreadComesWithAnEarlierTask,
                            RunsTasksOfManyThreadsOneByOneOnItsOwn, StoppedKeepsTheTasksForTheNextRun,
                            DropsUnrunTasksWithTheQueue);

}  // namespace Testing
