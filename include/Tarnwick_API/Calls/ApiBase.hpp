#pragma once

#include <Tarnwick_API/Facade/ApiEnvironment.hpp>

#include <cstdint>
#include <string>

namespace Tarnwick_API {

/// What a call takes over from the backend that it is made for; `ApiVersion1::apiBase` gives it.
struct ApiBase {
    ApiEnvironment environment;
    /// Sent with every call.
    std::int64_t partnersId;
    /// The URL that the calls' paths are below, such as "https://api.example/vb".
    std::string baseUrl;
};

}  // namespace Tarnwick_API
