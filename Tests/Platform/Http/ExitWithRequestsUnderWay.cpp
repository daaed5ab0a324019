// Leaves `main` with requests under way, waiting and not yet taken over. The test is that the process ends, with
// status 0, no completion called and nothing found by the sanitizers.

#include <Tarnwick_API/Platform/HttpSession.hpp>

#include "ScriptedServer.hpp"

#include <cstdlib>

namespace {

/// Outlives `main`, and so the I/O thread, and still sends when it goes.
struct LateSender {
    std::shared_ptr<Platform::HttpSession> session;
    std::shared_ptr<const Platform::HttpRequest> request;
    ~LateSender() { send(); }
    void send() const {
        session->send(request, [](const Platform::HttpAnswer&) { std::_Exit(EXIT_FAILURE); });
    }
};

}  // namespace

int main() {
    static ScriptedServer server;
    server.answerAlways({"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n1", ScriptedAnswer::Then::hold});
    Platform::HttpSessionConfiguration configuration;
    configuration.usesProxy = false;
    configuration.allowsPlainHttp = true;
    static const LateSender sender{
        Platform::makeHttpSession(configuration),
        std::make_shared<const Platform::HttpRequest>(
            Platform::HttpMethod::get, Platform::Url::fromString(server.url()).value(), Platform::Parameters{},
            Platform::ParameterEncoding::url, Platform::HttpHeaders{})};
    for (int count = 0; count < 20; ++count) {
        sender.send();
    }
    if (!server.waitForRequests(6)) {
        return EXIT_FAILURE;
    }
    sender.send();
    return EXIT_SUCCESS;
}
