#pragma once

#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <string>

namespace Tarnwick_API::Platform {

/// What tells the entries of a cache apart: "GET https://host/path?query".
[[nodiscard]] std::string cacheKey(const HttpRequest& request);

}  // namespace Tarnwick_API::Platform
