// An application that runs an asio::io_context. Usage: example_asio_io_context HOST[:PORT] CA-FILE

#include <Tarnwick_API/Platform/EventLoops/AsioMainQueue.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>

#include <asio/io_context.hpp>

namespace {

using namespace Tarnwick_API;

DetachedCoroutine showStatus(std::shared_ptr<TarnwickApi> api) {
    const auto status = co_await api->getStatus();
    std::cout << "Answered on the thread of the context: " << status->ip << '\n';
    // Lets the context run out of work. One that listens for something else goes on.
    Platform::MainQueue::setMain(nullptr);
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        std::cerr << "usage: example_asio_io_context HOST[:PORT] CA-FILE\n";
        return EXIT_FAILURE;
    }
    asio::io_context context;
    Platform::MainQueue::setMain(std::make_shared<Platform::AsioMainQueue>(context));

    // Only a development service has certificates of its own; leave the session alone for the real one.
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = arguments[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    showStatus(TarnwickApi::create({
        .consumerKey = "tarnwick-demo-key",
        .consumerSecret = "tarnwick-demo-secret",
        .partnersId = 7,
        .uuid = Platform::Uuid::random(),
        .keychainService = "example",
        .apiUrl = {.live = arguments[1]},
    }));
    try {
        context.run();
    } catch (const OperationFailed& failed) {
        std::cerr << failed.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
