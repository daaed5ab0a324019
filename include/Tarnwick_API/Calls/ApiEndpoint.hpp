#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <optional>
#include <string>

namespace Tarnwick_API {

/// Which endpoint of the service a call goes to, and how.
struct ApiEndpoint {
    Platform::HttpMethod method;
    /// The path below the base URL, without a leading slash.
    std::string urlPath;
    /// How the parameters travel.
    Platform::ParameterEncoding encoding;
    /// Headers beside the standard ones.
    std::optional<Platform::HttpHeaders> headers = std::nullopt;
};

}  // namespace Tarnwick_API
