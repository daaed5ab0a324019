#include <Tarnwick_API/Platform/EventLoops/GLibMainQueue.hpp>

#include "HostLoopContract.hpp"

#include <functional>
#include <stdexcept>

namespace Tarnwick_API::Platform {
namespace {

struct OwnLoop {
    void operator()(GMainLoop* loop) const { g_main_loop_unref(loop); }
};
using Loop = std::unique_ptr<GMainLoop, OwnLoop>;

struct GLibLoop {
    static constexpr bool nests = true;

    void makeQueue() { queue = std::make_shared<GLibMainQueue>(); }
    void run() { g_main_loop_run(loop.get()); }
    void stop() { g_main_loop_quit(loop.get()); }
    void runNested() { g_main_loop_run(nested.get()); }
    void stopNested() { g_main_loop_quit(nested.get()); }
    void end() { loop.reset(); }
    static void later(std::chrono::milliseconds delay, std::function<void()> action) {
        g_timeout_add_once(
            static_cast<guint>(delay.count()),
            +[](gpointer kept) {
                const std::unique_ptr<std::function<void()>> owned{static_cast<std::function<void()>*>(kept)};
                (*owned)();
            },
            std::make_unique<std::function<void()>>(std::move(action)).release());
    }

    std::shared_ptr<MainQueue> queue = std::make_shared<GLibMainQueue>();
    Loop loop{g_main_loop_new(nullptr, FALSE)};
    Loop nested{g_main_loop_new(nullptr, FALSE)};
};

TEST(GLibMainQueue, EndsTheProgramWhereATaskThrows) {
    EXPECT_DEATH(
        {
            GLibLoop loop;
            loop.queue->soon([] { throw std::runtime_error{"thrown by a task"}; });
            loop.run();
        },
        "thrown by a task");
}

TEST(GLibMainQueue, LeavesTheLoopInPeaceWhenNothingIsDue) {
    GLibLoop loop;
    loop.queue->after(std::chrono::hours{1}, [] {});
    loop.queue->soon([&] { loop.stop(); });
    loop.run();
    EXPECT_FALSE(g_main_context_pending(nullptr));
}

TEST(GLibMainQueue, RunsOnTheThreadOfAContextOfItsOwn) {
    GMainContext* const context = g_main_context_new();
    GLibMainQueue queue{context};
    const Loop loop{g_main_loop_new(context, FALSE)};
    g_main_context_unref(context);
    EXPECT_FALSE(queue.isOwnThread()) << "another one is to iterate it";
    bool ran = false;
    queue.soon([&] {
        ran = queue.isOwnThread();
        g_main_loop_quit(loop.get());
    });
    std::jthread{[&] { g_main_loop_run(loop.get()); }}.join();
    EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace Tarnwick_API::Platform

namespace Testing {

using Tarnwick_API::Platform::GLibLoop;
INSTANTIATE_TYPED_TEST_SUITE_P(GLib, MainQueueContract, GLibLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(GLib, HostLoopContract, GLibLoop);

}  // namespace Testing
