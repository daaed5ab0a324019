#include <Tarnwick_API/Platform/EventLoops/QtMainQueue.hpp>

#include "HostLoopContract.hpp"

#include <array>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include <QEventLoop>
#include <QTimer>

namespace Tarnwick_API::Platform {
namespace {

/// The application object is made when the loop begins to run, so that the queue and its first tasks are there before.
struct QtLoop {
    static constexpr bool nests = true;

    void makeQueue() { queue = std::make_shared<QtMainQueue>(); }
    void run() {
        if (!application) {
            application.emplace(argumentCount, arguments.data());
        }
        QCoreApplication::exec();
    }
    static void stop() { QCoreApplication::quit(); }
    void runNested() { nested.emplace().exec(); }
    void stopNested() { nested->quit(); }
    void end() { application.reset(); }
    static void later(std::chrono::milliseconds delay, std::function<void()> action) {
        QTimer::singleShot(delay, std::move(action));
    }

    std::string name = "tests";
    std::array<char*, 2> arguments{name.data(), nullptr};
    int argumentCount = 1;
    std::shared_ptr<MainQueue> queue = std::make_shared<QtMainQueue>();
    std::optional<QCoreApplication> application;
    std::optional<QEventLoop> nested;
};

TEST(QtMainQueue, EndsTheProgramWhereATaskThrows) {
    EXPECT_DEATH(
        {
            QtLoop loop;
            loop.queue->soon([] { throw std::runtime_error{"thrown by a task"}; });
            loop.run();
        },
        "thrown by a task");
}

}  // namespace
}  // namespace Tarnwick_API::Platform

namespace Testing {

using Tarnwick_API::Platform::QtLoop;
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainQueueContract, QtLoop);
INSTANTIATE_TYPED_TEST_SUITE_P(Qt, HostLoopContract, QtLoop);

}  // namespace Testing
