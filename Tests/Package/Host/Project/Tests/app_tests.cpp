#include <Tarnwick_API/Testing/ApiFixture.hpp>

#include <cstdlib>
#include <string>

int main() {
    const Tarnwick_API::Testing::ApiFixture fixture;
    fixture.backend->getAuthToken.answer("held ready");
    std::string received;
    fixture.api->getAuthToken([&](const auto& token, const auto& /*error*/) { received = token.value_or(""); });
    fixture.queue->runAll();
    return received == "held ready" ? EXIT_SUCCESS : EXIT_FAILURE;
}
