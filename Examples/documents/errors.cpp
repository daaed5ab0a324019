// The code of docs/ERRORS.md. Usage: document_errors HOST[:PORT] CA-FILE NAME PASSWORD

#include <Tarnwick_API/Tarnwick_API.hpp>

#include "TestService.hpp"

#include <chrono>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

namespace {

using namespace Tarnwick_API;
using namespace std::chrono_literals;

/// What a window for signing in says; nothing where the user has closed it.
std::string messageFor(const Failure& failure) {
    if (const auto* response = failure.as<ResponseError>()) {
        switch (response->kind()) {
            case ResponseError::Kind::unauthorized:
                return "The name or the password is wrong.";
            case ResponseError::Kind::notReachable:
                return "The service can't be reached. Are you online?";
            default:
                break;
        }
    }
    if (const auto* end = failure.as<CancellationError>()) {
        return end->reason() == Platform::StopReason::stopped ? "" : "This takes too long. Try again later.";
    }
    return std::string{failure.localizedDescription()};
}

DetachedCoroutine visit(std::shared_ptr<TarnwickApi> api, std::string name, std::string host) {
    std::cout << messageFor((co_await api->login(name, "wrong")).failure()) << '\n';
    api->setApiUrl(ApiUrl{{.live = host}});
    api->setVersion(ApiVersion::v1);
    std::cout << messageFor((co_await api->getStatus().within(500ms)).failure()) << '\n';
    Platform::BuiltInMainQueue::shared()->stop();
}

void keepLog(const std::shared_ptr<std::ostream>& file) {
    Platform::Logging::setSink([file](const Platform::Logging::Entry& entry) { *file << entry.message << std::endl; },
                               Platform::Logging::Secrets::hidden);
}

}  // namespace

int main(int, char** words) {
    auto settings = settingsOfTestService(words);
    settings.retrySpread = {.share = 0.5};
    const auto api = TarnwickApi::create(std::move(settings));
    const auto observation = api->observeAttempts([](const RequestAttempt& attempt) {
        if (attempt.failure) {
            std::cout << attempt.host << ", attempt " << attempt.number << ": " << name(attempt.failure->kind) << ": "
                      << attempt.failure->description << '\n';
        }
    });
    keepLog(std::make_shared<std::ostringstream>());
#ifndef NDEBUG
    Platform::Logging::setSink([](const Platform::Logging::Entry& entry) { std::clog << entry.message << '\n'; });
#endif
    // Nobody listens at that port.
    visit(api, words[3], "localhost:1");
    Platform::BuiltInMainQueue::shared()->run();
}
