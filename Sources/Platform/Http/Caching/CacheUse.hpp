#pragma once

#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <Platform/Http/Caching/StoredResponse.hpp>

#include <memory>
#include <optional>

namespace Tarnwick_API::Platform {

/// What an exchange has to do with a cache.
struct CacheUse {
    std::shared_ptr<UrlCache> cache;
    /// The answer that the server is asked to confirm, and the request that asks it; or neither.
    std::optional<StoredAnswer> stored = std::nullopt;
    std::shared_ptr<const HttpRequest> conditional = nullptr;
    WallTime requestTime = {};
};

}  // namespace Tarnwick_API::Platform
