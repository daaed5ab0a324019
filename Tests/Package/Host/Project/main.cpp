#include <Tarnwick_API/Tarnwick_API.hpp>

#include "Platform.hpp"

#include <cstdlib>

int main() {
    const Platform platform;
    const auto api = Tarnwick_API::TarnwickApi::create(
        Tarnwick_API::ApiVersion::v1, "key", "secret", 7, Tarnwick_API::Platform::Uuid::random(), "host",
        {1, 2, 3, 4, 5, 6, 7, 8, 9}, {platform.apiHost(), "beta.example", "dev.example", "staging.example"});
    return api->baseUrl() == "https://" + platform.apiHost() + "/vb" ? EXIT_SUCCESS : EXIT_FAILURE;
}
