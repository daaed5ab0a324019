#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

class BuiltInMainQueueTest : public testing::Test {
protected:
    MainQueue::Task task(const std::string& name) {
        return [this, name] { ran_.push_back(name); };
    }

    MainQueue::Task stop() {
        return [this] { queue_.stop(); };
    }

    BuiltInMainQueue queue_;
    std::vector<std::string> ran_;
};

TEST_F(BuiltInMainQueueTest, RunsTasksInOrderAndDelayedOnesNotBeforeTheirTime) {
    const auto begin = std::chrono::steady_clock::now();
    queue_.after(20ms, task("second"));
    queue_.after(20ms, stop());
    queue_.after(1h, task("never"));
    queue_.after(std::chrono::nanoseconds::max(), task("endless"));
    queue_.soon({});
    queue_.after(10ms, task("first"));
    queue_.soon(task("soon"));
    queue_.run();
    EXPECT_THAT(ran_, ElementsAre("soon", "first", "second"));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, 20ms);
}

TEST_F(BuiltInMainQueueTest, WaitsOnAnEndlessDelayUntilAnotherThreadStopsIt) {
    queue_.after(std::chrono::nanoseconds::max(), task("endless"));
    const std::jthread other{[&] { queue_.soon(stop()); }};
    queue_.run();
    EXPECT_TRUE(ran_.empty());
}

TEST_F(BuiltInMainQueueTest, StopKeepsTheTasksThatHaveNotRun) {
    queue_.soon(task("a"));
    queue_.stop();
    queue_.run();
    EXPECT_TRUE(ran_.empty()) << "stopped before it ran";
    queue_.soon(stop());
    queue_.soon(task("b"));
    queue_.run();
    EXPECT_THAT(ran_, ElementsAre("a"));
    queue_.runUntil([this] { return ran_.size() == 2; });
    EXPECT_THAT(ran_, ElementsAre("a", "b"));
}

TEST_F(BuiltInMainQueueTest, DelayedTasksComeUpBetweenTasksThatRepostThemselves) {
    bool due = false;
    queue_.after(1ms, [&] { due = true; });
    MainQueue::Task repost = [&] { queue_.soon(repost); };
    queue_.soon(repost);
    queue_.runUntil([&] { return due; });
}

TEST_F(BuiltInMainQueueTest, AnExceptionLeavesRunWhichMayBeCalledAgain) {
    queue_.soon([] { throw std::runtime_error{"task"}; });
    queue_.soon(task("next"));
    queue_.soon(stop());
    EXPECT_THROW(queue_.run(), std::runtime_error);
    queue_.run();
    EXPECT_THAT(ran_, ElementsAre("next"));
}

TEST_F(BuiltInMainQueueTest, RunsTasksOfManyThreadsOneByOneOnItsOwn) {
    constexpr int perThread = 500;
    const auto queueThread = std::this_thread::get_id();
    std::vector<std::vector<int>> seen(4);
    int total = 0;
    std::vector<std::jthread> threads;
    threads.reserve(4);
    for (auto& ofThread : seen) {
        threads.emplace_back([&] {
            for (int number = 0; number < perThread; ++number) {
                queue_.soon([&, number] {
                    EXPECT_EQ(std::this_thread::get_id(), queueThread);
                    ofThread.push_back(number);
                    ++total;
                });
            }
        });
    }
    queue_.runUntil([&] { return total == 4 * perThread; });
    for (const auto& ofThread : seen) {
        EXPECT_TRUE(std::ranges::is_sorted(ofThread)) << "a thread's tasks run in the order it handed them over";
    }
}

TEST_F(BuiltInMainQueueTest, DropsUnrunTasksWithTheQueue) {
    const auto owned = std::make_shared<int>();
    {
        BuiltInMainQueue queue;
        queue.soon([owned] {});
        queue.after(1h, [owned] {});
        EXPECT_EQ(owned.use_count(), 3);
    }
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(MainQueue, IsTheBuiltInOneUnlessTheHostInstallsAnother) {
    const ScopedProcessValues scope;
    EXPECT_EQ(MainQueue::main(), BuiltInMainQueue::shared());
    const auto queue = std::make_shared<BuiltInMainQueue>();
    MainQueue::setMain(queue);
    EXPECT_EQ(MainQueue::main(), queue);
    MainQueue::setMain(nullptr);
    EXPECT_EQ(MainQueue::main(), BuiltInMainQueue::shared());
}

}  // namespace
}  // namespace Tarnwick_API::Platform
