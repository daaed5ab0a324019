// The code of docs/THREADS.md. Usage: document_threads HOST[:PORT] CA-FILE

#include <Tarnwick_API/Tarnwick_API.hpp>

#include "TestService.hpp"

#include <chrono>
#include <iostream>
#include <memory>
#include <thread>
#include <utility>

namespace {

using namespace Tarnwick_API;
using namespace std::chrono_literals;

/// A window that may be closed while its answer is on the way.
class StatusWindow : public std::enable_shared_from_this<StatusWindow> {
public:
    explicit StatusWindow(std::shared_ptr<TarnwickApi> api) : api_{std::move(api)} {}
    ~StatusWindow() { stop_.stop(); }

    void refresh() {
        api_->getStatus().stoppedBy(stop_.token()).then([window = weak_from_this()](const Outcome<Status>& status) {
            if (const auto open = window.lock()) {
                open->show(status ? status->ip : std::string{status.failure().localizedDescription()});
            }
        });
    }

    [[nodiscard]] bool isFilled() const { return isFilled_; }

private:
    void show(const std::string& text) {
        std::cout << "Window: " << text << '\n';
        isFilled_ = true;
    }

    bool isFilled_ = false;
    std::shared_ptr<TarnwickApi> api_;
    Platform::StopSource stop_;
};

void work(const std::shared_ptr<TarnwickApi>& api) {
    const Outcome<Status> status = api->getStatus().within(20s).future().get();
    Platform::MainQueue::main()->soon([ip = status ? status->ip : ""] {
        std::cout << "Worker: " << ip << '\n';
        Platform::BuiltInMainQueue::shared()->stop();
    });
}

}  // namespace

int main(int, char** words) {
    const auto api = TarnwickApi::create(settingsOfTestService(words));
    const auto queue = Platform::BuiltInMainQueue::shared();
    std::make_shared<StatusWindow>(api)->refresh();  // closed at once: shows nothing
    const auto window = std::make_shared<StatusWindow>(api);
    window->refresh();
    queue->runUntil([&] { return window->isFilled(); });
    std::thread worker{work, api};
    queue->run();
    worker.join();
}
