#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include "AppleFrameworksDouble.hpp"

#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace AppleFrameworksDouble;
using namespace std::chrono_literals;

class DispatchMainQueue : public ::testing::Test {
protected:
    void TearDown() override { expectNothingLeft(); }

    MainQueue::Task noting(char name) {
        return [this, name] { order += name; };
    }

    const ScopedProcessValues scope{ScopedProcessValues::Start::defaults};
    const std::shared_ptr<MainQueue> queue = MainQueue::main();
    std::string order;
};

TEST_F(DispatchMainQueue, KeepsTasksInOrderUntilTheLoopRuns) {
    queue->after(2s, noting('e'));
    queue->after(1s, noting('c'));
    queue->after(1s, noting('d'));
    queue->after(-1s, noting('b'));
    queue->soon(noting('a'));
    queue->soon({});
    queue->after(1s, {});
    EXPECT_EQ(order, "");
    runDispatchMainQueue();
    EXPECT_EQ(order, "ab");
    runDispatchMainQueue(1s - 1ns);
    EXPECT_EQ(order, "ab");
    runDispatchMainQueue(1ns);
    EXPECT_EQ(order, "abcd");
    runDispatchMainQueue(1s);
    EXPECT_EQ(order, "abcde");
}

TEST_F(DispatchMainQueue, RunsWhatTasksHandOverAndTakesEndlessDelays) {
    queue->after(std::chrono::nanoseconds::max(), noting('z'));
    queue->soon([this] {
        queue->after(1s, noting('b'));
        queue->soon(noting('a'));
    });
    runDispatchMainQueue(24h * 365 * 99);
    EXPECT_EQ(order, "ab");
    runDispatchMainQueue(24h * 365 * 2);
    EXPECT_EQ(order, "abz");
}

TEST_F(DispatchMainQueue, IsTheDefaultUntilAProgramAsksForTheBuiltInOne) {
    EXPECT_EQ(MainQueue::main(), queue);
    makeMemoryKeychainStore()->unlock([this](KeychainStatus) { order += 'a'; });
    MainQueue::setMain(BuiltInMainQueue::shared());
    EXPECT_EQ(MainQueue::main(), BuiltInMainQueue::shared());
    EXPECT_EQ(order, "");
    runDispatchMainQueue();
    EXPECT_EQ(order, "a");
    MainQueue::setMain(nullptr);
    EXPECT_EQ(MainQueue::main(), queue);
}

TEST_F(DispatchMainQueue, KnowsItsThread) {
    EXPECT_TRUE(queue->isOwnThread());
    std::thread{[this] {
        EXPECT_FALSE(queue->isOwnThread());
        // A program that has left its first thread to libdispatch has its tasks run on others.
        queue->soon([this] { EXPECT_TRUE(queue->isOwnThread()); });
        runDispatchMainQueue();
    }}.join();
    EXPECT_FALSE(queue->isOwnThread());
    queue->soon([] {});
    runDispatchMainQueue();
}

}  // namespace
}  // namespace Tarnwick_API::Platform
