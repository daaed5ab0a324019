#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The directives of "Cache-Control" that mean something to a private cache.
struct CacheControl {
    bool noStore = false;
    /// Also for "no-cache" with names of headers: such a response is validated as a whole.
    bool noCache = false;
    /// 0 for what is no number; the smallest of several.
    std::optional<std::chrono::seconds> maxAge = std::nullopt;
    std::optional<std::chrono::seconds> minFresh = std::nullopt;
};

/// Reads a header's value. What is malformed is skipped or read in the way that uses the cache less.
[[nodiscard]] CacheControl parseCacheControl(std::string_view value);

/// A number of seconds as headers have it; what is too great for any use is cut. None for what is no number.
[[nodiscard]] std::optional<std::chrono::seconds> parseDeltaSeconds(std::string_view text);

}  // namespace Tarnwick_API::Platform
