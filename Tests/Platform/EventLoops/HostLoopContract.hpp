#pragma once

#include <MainQueueContract.hpp>

namespace Testing {

/// What holds besides for a queue on a host's loop. `Loop` also has `later`, the host's own timers, `end`, after which
/// what the loop was made of is gone, and `nests`.
template <typename Loop>
class HostLoopContract : public MainQueueContract<Loop> {};

TYPED_TEST_SUITE_P(HostLoopContract);

TYPED_TEST_P(HostLoopContract, LeavesTheHostsOwnTimersTheirTurn) {
    bool due = false;
    Tarnwick_API::Platform::MainQueue::Task repost = [&] {
        if (due) {
            this->loop.stop();
        } else {
            this->loop.queue->soon(repost);
        }
    };
    this->loop.queue->soon([&] {
        this->loop.later(std::chrono::milliseconds{1}, [&] { due = true; });
        repost();
    });
    this->loop.run();
    EXPECT_TRUE(due);
}

TYPED_TEST_P(HostLoopContract, RunsTheTasksBehindOneThatRunsANestedLoop) {
    if constexpr (TypeParam::nests) {
        this->loop.queue->soon([&] {
            this->loop.runNested();
            this->ran.emplace_back("outer");
            this->loop.queue->soon([&] { this->loop.stop(); });
        });
        this->loop.queue->soon(this->task("inner"));
        this->loop.queue->after(std::chrono::milliseconds{1}, [&] { this->loop.stopNested(); });
        this->loop.run();
        EXPECT_THAT(this->ran, testing::ElementsAre("inner", "outer"));
    }
}

TYPED_TEST_P(HostLoopContract, IsDestroyedInATaskOrOnAnotherThreadWithWorkPending) {
    for (const bool onAnotherThread : {false, true}) {
        this->loop.makeQueue();
        this->loop.queue->after(std::chrono::milliseconds{1}, this->task("delayed"));
        this->loop.queue->soon([&] {
            this->loop.later(std::chrono::milliseconds{5}, [&] { this->loop.stop(); });
            if (onAnotherThread) {
                std::jthread{[&] { this->loop.queue.reset(); }}.join();
            } else {
                this->loop.queue.reset();
            }
        });
        this->loop.queue->soon(this->task("next"));
        this->loop.run();
        EXPECT_TRUE(this->ran.empty());
    }
}

TYPED_TEST_P(HostLoopContract, OutlivesTheLoopAndDestroysItsTasksUnrun) {
    const auto owned = std::make_shared<int>();
    const auto handOver = [&] {
        this->loop.queue->soon([this, owned] { this->ran.emplace_back("after the end"); });
        this->loop.queue->after(std::chrono::hours{1}, [owned] {});
    };
    this->loop.queue->soon(this->stop());
    this->loop.run();
    handOver();
    this->loop.end();
    handOver();
    std::jthread{handOver}.join();
    this->loop.queue.reset();
    EXPECT_TRUE(this->ran.empty());
    EXPECT_EQ(owned.use_count(), 1);
}

REGISTER_TYPED_TEST_SUITE_P(HostLoopContract, LeavesTheHostsOwnTimersTheirTurn,
                            RunsTheTasksBehindOneThatRunsANestedLoop,
                            IsDestroyedInATaskOrOnAnotherThreadWithWorkPending,
                            OutlivesTheLoopAndDestroysItsTasksUnrun);

}  // namespace Testing
