#pragma once

#include <Tarnwick_API/Platform/HttpRequest.hpp>

#include <string>

namespace Platform {

/// What tells the entries of a cache apart: "GET https://host/path?query".
[[nodiscard]] std::string cacheKey(const HttpRequest& request);

}  // namespace Platform
