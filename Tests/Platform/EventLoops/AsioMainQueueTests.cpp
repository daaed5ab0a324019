#include <Tarnwick_API/Platform/EventLoops/AsioMainQueue.hpp>

#include "HostLoopContract.hpp"

#include <atomic>
#include <functional>
#include <optional>
#include <stdexcept>

namespace Tarnwick_API::Platform {
namespace {

struct AsioLoop {
    static constexpr bool nests = false;

    void makeQueue() { queue = std::make_shared<AsioMainQueue>(*context); }
    void run() {
        context->restart();
        context->run();
    }
    void stop() { context->stop(); }
    void end() { context.reset(); }
    void later(std::chrono::milliseconds delay, std::function<void()> action) {
        const auto timer = std::make_shared<asio::steady_timer>(*context, delay);
        timer->async_wait([timer, action = std::move(action)](const asio::error_code&) { action(); });
    }

    std::optional<asio::io_context> context{std::in_place};
    std::shared_ptr<MainQueue> queue = std::make_shared<AsioMainQueue>(*context);
};

TEST(AsioMainQueue, AnExceptionLeavesRunWhichMayBeCalledAgain) {
    AsioLoop loop;
    bool next = false;
    loop.queue->soon([] { throw std::runtime_error{"task"}; });
    loop.queue->soon([&] {
        next = true;
        loop.stop();
    });
    EXPECT_THROW(loop.run(), std::runtime_error);
    loop.run();
    EXPECT_TRUE(next);
}

TEST(AsioMainQueue, DestroysItsTasksWithTheContext) {
    AsioLoop loop;
    const auto owned = std::make_shared<int>();
    loop.queue->soon([owned] {});
    loop.end();
    EXPECT_EQ(owned.use_count(), 1);
    loop.queue->after(std::chrono::milliseconds{1}, [owned] {});
    EXPECT_EQ(owned.use_count(), 1);
    EXPECT_FALSE(loop.queue->isOwnThread());
}

TEST(AsioMainQueue, KeepsTheContextRunningUntilItIsLetGo) {
    AsioLoop loop;
    std::jthread other;
    bool answered = false;
    loop.queue->soon([&] {
        other = std::jthread{[&, queue = std::move(loop.queue)]() mutable {
            auto& kept = *queue;
            kept.soon([&answered, queue = std::move(queue)] { answered = true; });
        }};
    });
    loop.run();
    EXPECT_TRUE(answered);
}

TEST(AsioMainQueue, RunsTasksOneByOneOnAContextOfSeveralThreads) {
    AsioLoop loop;
    std::atomic<int> running = 0;
    int total = 0;
    for (int number = 0; number < 1000; ++number) {
        loop.queue->soon([&, number] {
            EXPECT_EQ(++running, 1);
            std::this_thread::yield();
            EXPECT_EQ(total++, number);
            --running;
            if (total == 1000) {
                loop.stop();
            }
        });
    }
    {
        const std::jthread other{[&] { loop.context->run(); }};
        loop.context->run();
    }
    EXPECT_EQ(total, 1000);
}

}  // namespace
}  // namespace Tarnwick_API::Platform

namespace Testing {

using Tarnwick_API::Platform::AsioLoop;
INSTANTIATE_TYPED_TEST_SUITE_P(Asio, MainQueueContract, AsioLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Asio, HostLoopContract, AsioLoop);

}  // namespace Testing
