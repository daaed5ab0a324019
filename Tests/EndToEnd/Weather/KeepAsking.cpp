// KeepAsking HOST:PORT ROOTS-FILE IDLE-TIMEOUT: asks a service for its status again and again, and prints a line for
// each attempt: microseconds since 1970, and "good" or why it failed. The idle time-out is in milliseconds. Each line
// of its input is a notice that the network has changed; the end of the input ends it.

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <chrono>
#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>

int main(int count, char** words) try {
    using namespace Tarnwick_API;
    if (count != 4) {
        throw std::invalid_argument{"usage: KeepAsking HOST:PORT ROOTS-FILE IDLE-TIMEOUT"};
    }
    auto network = ApiVersion1::defaultSessionConfiguration();
    network.trustedRootsFile = words[2];
    network.idleTimeout = std::chrono::milliseconds{std::stol(words[3])};
    network.usesProxy = false;
    const auto session = Platform::makeHttpSession(network);
    ApiVersion1::setSessionManager(session);
    const auto queue = Platform::BuiltInMainQueue::shared();
    Platform::MainQueue::setMain(queue);
    const auto api = TarnwickApi::create({.consumerKey = "tarnwick-demo-key",
                                          .consumerSecret = "tarnwick-demo-secret",
                                          .partnersId = 7,
                                          .uuid = Platform::Uuid::random(),
                                          .keychainService = "weather",
                                          .filterIds = {.generalCountriesAll = 12},
                                          .apiUrl = {.live = words[1]}});
    const auto observation = api->observeAttempts([](const RequestAttempt& attempt) {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        std::cout << std::chrono::duration_cast<std::chrono::microseconds>(now).count() << ' '
                  << (attempt.failure ? name(attempt.failure->kind) : "good") << std::endl;
    });
    const std::function<void()> ask = [&] {
        api->getStatus([&](const std::optional<Status>&, const std::optional<ApiError>&) {
            // Without a route the answer is there at once.
            queue->after(std::chrono::milliseconds{10}, ask);
        });
    };
    ask();
    std::thread notices{[&] {
        for (std::string line; std::getline(std::cin, line);) {
            session->networkChanged();
        }
        queue->stop();
    }};
    queue->run();
    notices.join();
} catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
}
