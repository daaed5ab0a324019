#include <Tarnwick_API/Tarnwick_API.hpp>

#include "Platform.hpp"

#include <cstdlib>

namespace {

// What the library throws is known to who catches it, on the other side of a shared library too.
bool catchesWhatTheLibraryThrows() {
    try {
        (void)Tarnwick_API::decodeFavoriteEntries("[");
    } catch (const Tarnwick_API::Platform::DecodingError&) {
        return true;
    } catch (...) {
        return false;
    }
    return false;
}

}  // namespace

int main() {
    const Platform platform;
    const auto api = Tarnwick_API::TarnwickApi::create(
        Tarnwick_API::ApiVersion::v1, "key", "secret", 7, Tarnwick_API::Platform::Uuid::random(), "host",
        {1, 2, 3, 4, 5, 6, 7, 8, 9}, {platform.apiHost(), "beta.example", "dev.example", "staging.example"});
    const bool asksItsHost = api->baseUrl() == "https://" + platform.apiHost() + "/vb";
    return asksItsHost && catchesWhatTheLibraryThrows() ? EXIT_SUCCESS : EXIT_FAILURE;
}
