// The shortest whole program: asks a development service how it sees this computer.
// Usage: example_read_status HOST[:PORT] CA-FILE

#include <Tarnwick_API/Tarnwick_API.hpp>

#include <cstdlib>
#include <iostream>
#include <optional>

int main(int argumentCount, char** arguments) {
    using namespace Tarnwick_API;
    if (argumentCount != 3) {
        std::cerr << "usage: example_read_status HOST[:PORT] CA-FILE\n";
        return EXIT_FAILURE;
    }
    // Only a development service has certificates of its own; leave the session alone for the real one.
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = arguments[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    // This program has no event loop of its own.
    const auto mainQueue = Platform::BuiltInMainQueue::shared();
    Platform::MainQueue::setMain(mainQueue);

    const auto api = TarnwickApi::create(
        ApiVersion::v1, "tarnwick-demo-key", "tarnwick-demo-secret", 7, Platform::Uuid::random(), "example",
        FilterIds{11, 12, 13, 14, 22, 23, 32, 33, 41}, ApiUrl{arguments[1], arguments[1], arguments[1], arguments[1]});
    int exitStatus = EXIT_FAILURE;
    api->getStatus([&](const std::optional<Status>& status, const std::optional<ApiError>& error) {
        if (status) {
            std::cout << "Your address: " << status->ip << '\n';
            exitStatus = EXIT_SUCCESS;
        } else {
            std::cerr << (error ? error->localizedDescription() : "The answer made no sense.") << '\n';
        }
        mainQueue->stop();
    });
    mainQueue->run();
    return exitStatus;
}
