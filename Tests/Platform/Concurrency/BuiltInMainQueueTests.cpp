#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Concurrency/BuiltInMainQueue.hpp>
#include <Tarnwick_API/Platform/Concurrency/VirtualTimeMainQueue.hpp>

#include <MainQueueContract.hpp>

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

TEST(MainQueue, IsTheBuiltInOneUnlessTheHostInstallsAnother) {
    const ScopedProcessValues scope;
    EXPECT_EQ(MainQueue::main(), BuiltInMainQueue::shared());
    const auto queue = std::make_shared<BuiltInMainQueue>();
    MainQueue::setMain(queue);
    EXPECT_EQ(MainQueue::main(), queue);
    MainQueue::setMain(nullptr);
    EXPECT_EQ(MainQueue::main(), BuiltInMainQueue::shared());
}

template <typename Queue>
void runUntilDestroyed(void (Queue::*run)()) {
    auto queue = std::make_shared<Queue>();
    queue->soon([&] { queue.reset(); });
    queue->soon([] { FAIL() << "of a queue that is no more"; });
    (queue.get()->*run)();
}

TEST(MainQueue, MayBeDestroyedByItsTask) {
    runUntilDestroyed(&BuiltInMainQueue::run);
    runUntilDestroyed(&VirtualTimeMainQueue::runAll);
}

struct BuiltInLoop {
    void run() const { queue->run(); }
    void stop() const { queue->stop(); }

    std::shared_ptr<BuiltInMainQueue> queue = std::make_shared<BuiltInMainQueue>();
};

}  // namespace
}  // namespace Tarnwick_API::Platform

namespace Testing {

using Tarnwick_API::Platform::BuiltInLoop;
INSTANTIATE_TYPED_TEST_SUITE_P(BuiltIn, MainQueueContract, BuiltInLoop);

}  // namespace Testing
