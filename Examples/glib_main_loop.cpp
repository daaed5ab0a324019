// An application that runs a GLib main loop, as those on GTK do. Usage: example_glib_main_loop HOST[:PORT] CA-FILE

#include <Tarnwick_API/Platform/EventLoops/GLibMainQueue.hpp>
#include <Tarnwick_API/Tarnwick_API.hpp>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>

#include <glib.h>

int main(int argumentCount, char** arguments) {
    using namespace Tarnwick_API;
    if (argumentCount != 3) {
        std::cerr << "usage: example_glib_main_loop HOST[:PORT] CA-FILE\n";
        return EXIT_FAILURE;
    }
    const std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop{g_main_loop_new(nullptr, FALSE),
                                                                        &g_main_loop_unref};
    Platform::MainQueue::setMain(std::make_shared<Platform::GLibMainQueue>());

    // Only a development service has certificates of its own; leave the session alone for the real one.
    auto configuration = ApiVersion1::defaultSessionConfiguration();
    configuration.trustedRootsFile = arguments[2];
    ApiVersion1::setSessionManager(Platform::makeHttpSession(configuration));
    const auto api = TarnwickApi::create({
        .consumerKey = "tarnwick-demo-key",
        .consumerSecret = "tarnwick-demo-secret",
        .partnersId = 7,
        .uuid = Platform::Uuid::random(),
        .keychainService = "example",
        .apiUrl = {.live = arguments[1]},
    });

    int exitStatus = EXIT_FAILURE;
    api->getStatus([&](const std::optional<Status>& status, const auto& error) {
        if (status) {
            std::cout << "Answered on the thread of the GLib loop: " << status->ip << '\n';
            exitStatus = EXIT_SUCCESS;
        } else {
            std::cerr << Failure{error}.localizedDescription() << '\n';
        }
        g_main_loop_quit(loop.get());
    });
    g_main_loop_run(loop.get());
    return exitStatus;
}
