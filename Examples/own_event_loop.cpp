// A host with an event loop that no ready main queue is for, here one on epoll: two operations on a task schedule.
// Usage: example_own_event_loop HOST[:PORT] CA-FILE

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <optional>
#include <utility>

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace {

/// Stands for the loop that an application has anyway.
class EventLoop final : public Tarnwick_API::Platform::MainQueue {
public:
    EventLoop() : epoll_{epoll_create1(EPOLL_CLOEXEC)}, wakeUp_{eventfd(0, EFD_CLOEXEC)} {
        epoll_event event{};
        event.events = EPOLLIN;
        epoll_ctl(epoll_, EPOLL_CTL_ADD, wakeUp_, &event);
    }
    ~EventLoop() override {
        close(wakeUp_);
        close(epoll_);
    }
    EventLoop(const EventLoop&) = delete;
    EventLoop& operator=(const EventLoop&) = delete;

    void soon(Task task) override { after(std::chrono::nanoseconds{0}, std::move(task)); }

    void after(std::chrono::nanoseconds delay, Task task) override {
        {
            const std::lock_guard lock{mutex_};
            tasks_.add(TaskSchedule::dueAfter(now(), delay), std::move(task));
        }
        const std::uint64_t one = 1;
        static_cast<void>(write(wakeUp_, &one, sizeof one));
    }

    void run() {
        while (!stopped_) {
            std::array<epoll_event, 1> events{};
            if (epoll_wait(epoll_, events.data(), 1, millisecondsToNextTask()) > 0) {
                std::uint64_t count = 0;
                static_cast<void>(read(wakeUp_, &count, sizeof count));
            }
            while (const auto task = takeDue()) {
                task();
            }
        }
    }

    void stop() { stopped_ = true; }

private:
    using TaskSchedule = Tarnwick_API::Platform::TaskSchedule;

    static TaskSchedule::Time now() { return std::chrono::steady_clock::now().time_since_epoch(); }

    int millisecondsToNextTask() {
        const std::lock_guard lock{mutex_};
        const auto due = tasks_.nextDue();
        if (!due) {
            return -1;
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*due - now());
        return static_cast<int>(std::clamp<std::chrono::milliseconds::rep>(left.count(), 0, INT_MAX));
    }

    Task takeDue() {
        const std::lock_guard lock{mutex_};
        return tasks_.takeDue(now());
    }

    int epoll_;
    int wakeUp_;
    bool stopped_ = false;
    std::mutex mutex_;
    TaskSchedule tasks_;
};

}  // namespace

int main(int argumentCount, char** arguments) {
    using namespace Tarnwick_API;
    if (argumentCount != 3) {
        std::cerr << "usage: example_own_event_loop HOST[:PORT] CA-FILE\n";
        return EXIT_FAILURE;
    }
    const auto loop = std::make_shared<EventLoop>();
    Platform::MainQueue::setMain(loop);

    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = arguments[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    const auto api = TarnwickApi::create(
        ApiVersion::v1, "tarnwick-demo-key", "tarnwick-demo-secret", 7, Platform::Uuid::random(), "example",
        FilterIds{11, 12, 13, 14, 22, 23, 32, 33, 41}, ApiUrl{arguments[1], arguments[1], arguments[1], arguments[1]});
    api->getStatus([&](const std::optional<Status>& status, const std::optional<ApiError>& /*error*/) {
        std::cout << "Answered on the loop's own thread: " << (status ? status->ip : "no status") << '\n';
        loop->stop();
    });
    loop->run();
    return EXIT_SUCCESS;
}
