#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class VirtualTimeMainQueueTest : public testing::Test {
protected:
    /// A task that records its name and the time at which it runs.
    MainQueue::Task task(const std::string& name) {
        return [this, name] { ran_.emplace_back(name, queue_.now()); };
    }

    VirtualTimeMainQueue queue_;
    std::vector<std::pair<std::string, std::chrono::nanoseconds>> ran_;
};

TEST_F(VirtualTimeMainQueueTest, RunsTasksInOrderOfDueTimeThenOfArrival) {
    queue_.after(2s, task("d"));
    queue_.after(1s, task("b"));
    queue_.after(1s, task("c"));
    queue_.soon(task("a"));
    queue_.after(3s, task("e"));
    queue_.runReady();
    EXPECT_THAT(ran_, ElementsAre(Pair("a", 0s)));
    queue_.advance(1s - 1ns);
    EXPECT_THAT(ran_, ElementsAre(Pair("a", 0s)));
    queue_.advance(1s + 1ns);
    EXPECT_THAT(ran_, ElementsAre(Pair("a", 0s), Pair("b", 1s), Pair("c", 1s), Pair("d", 2s)));
    EXPECT_TRUE(queue_.hasDelayedTasks());
    queue_.runAll();
    EXPECT_THAT(ran_.back(), Pair("e", 3s));
    EXPECT_FALSE(queue_.hasDelayedTasks());
    EXPECT_THAT(queue_.pausesAskedFor(), ElementsAre(2s, 1s, 1s, 3s));
}

TEST_F(VirtualTimeMainQueueTest, TasksAddedByTasksRunAtTheirTime) {
    queue_.after(1s, [this] {
        queue_.soon(task("now"));
        queue_.after(500ms, task("within"));
        queue_.after(5s, task("beyond"));
    });
    queue_.advance(2s);
    EXPECT_THAT(ran_, ElementsAre(Pair("now", 1s), Pair("within", 1500ms)));
    EXPECT_EQ(queue_.now(), 2s);
}

TEST_F(VirtualTimeMainQueueTest, OddDelaysAndTasksDoNoHarm) {
    queue_.soon(task("first"));
    queue_.soon({});
    queue_.after(-1s, task("negative"));
    queue_.soon(task("last"));
    queue_.runReady();
    EXPECT_THAT(ran_, ElementsAre(Pair("first", 0s), Pair("negative", 0s), Pair("last", 0s)));
    ran_.clear();

    queue_.advance(10s);
    queue_.advance(-5s);
    EXPECT_EQ(queue_.now(), 10s);
    queue_.after(std::chrono::nanoseconds::max(), task("endless"));
    queue_.after(1s, task("second"));
    queue_.advance(1h);
    EXPECT_THAT(ran_, ElementsAre(Pair("second", 11s)));
}

TEST_F(VirtualTimeMainQueueTest, AnExceptionLeavesTheOtherTasksInPlace) {
    queue_.after(1s, [] { throw std::runtime_error{"task"}; });
    queue_.after(1s, task("other"));
    EXPECT_THROW(queue_.advance(3s), std::runtime_error);
    queue_.runReady();
    EXPECT_THAT(ran_, ElementsAre(Pair("other", 1s)));
}

TEST_F(VirtualTimeMainQueueTest, WaitsForOtherThreadsWithTheClockStandingStill) {
    bool done = false;
    const std::jthread other{[&] {
        queue_.after(1s, [&] { ADD_FAILURE() << "the clock moved"; });
        queue_.soon([&] { done = true; });
    }};
    EXPECT_TRUE(queue_.runUntil([&] { return done; }));
    EXPECT_EQ(queue_.now(), 0s);
    EXPECT_FALSE(queue_.runUntil([] { return false; }, 0s));
    EXPECT_THAT(ran_, IsEmpty());
}

}  // namespace
}  // namespace Tarnwick_API::Platform
