// Leaves `main` with requests under way, waiting and not yet taken over. The test is that the process ends, with
// status 0, no completion called and nothing found by the sanitizers.

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include "ScriptedServer.hpp"

#include <cstdlib>

namespace {

/// Outlives `main`, and so the I/O thread, and still sends when it goes.
struct LateSender {
    std::shared_ptr<Tarnwick_API::Platform::HttpSession> session;
    std::shared_ptr<const Tarnwick_API::Platform::HttpRequest> request;
    ~LateSender() { send(); }
    void send() const {
        session->send(request, [](const Tarnwick_API::Platform::HttpAnswer&) { std::_Exit(EXIT_FAILURE); });
    }
};

}  // namespace

int main() {
    static ScriptedServer server;
    server.answerAlways({"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n1", ScriptedAnswer::Then::hold});
    Tarnwick_API::Platform::HttpSessionConfiguration configuration;
    configuration.usesProxy = false;
    configuration.allowsPlainHttp = true;
    static const LateSender sender{
        Tarnwick_API::Platform::makeHttpSession(configuration),
        std::make_shared<const Tarnwick_API::Platform::HttpRequest>(
            Tarnwick_API::Platform::HttpMethod::get, Tarnwick_API::Platform::Url::fromString(server.url()).value(),
            Tarnwick_API::Platform::Parameters{}, Tarnwick_API::Platform::ParameterEncoding::url,
            Tarnwick_API::Platform::HttpHeaders{})};
    for (int count = 0; count < 20; ++count) {
        sender.send();
    }
    if (!server.waitForRequests(6)) {
        return EXIT_FAILURE;
    }
    sender.send();
    return EXIT_SUCCESS;
}
