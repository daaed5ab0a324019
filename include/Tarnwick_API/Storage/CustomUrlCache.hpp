#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API {

/// A URL cache whose entries expire ten minutes after they were stored, by `Platform::WallClock`. For applications that
/// want answers of the service reused for a short time: `Platform::UrlCache::setShared` or
/// `Platform::HttpSessionConfiguration::cache` take one. The library installs none by itself.
///
/// It serves only what it has stored itself: an entry of a plain cache in the same file, without the date of storing,
/// is neither served nor removed. Thread: any.
class TARNWICK_API_EXPORT CustomUrlCache : public Platform::UrlCache {
public:
    /// The name in an entry's user information under which the date of storing is kept.
    static constexpr std::string_view cachedDateKey = "CachedDate";
    /// How long an entry is served.
    static constexpr std::chrono::duration<double> expireInterval{600.0};

    /// The capacities and the place of a plain cache.
    CustomUrlCache() = default;
    using Platform::UrlCache::UrlCache;

    /// Adds the date, in place of any that the response has; the rest of its user information stays.
    void storeCachedResponse(const std::shared_ptr<const Platform::CachedUrlResponse>& response,
                             const Platform::HttpRequest& request) override;

    /// The request's entry with its date, unless it was stored more than `expireInterval` ago; such a one is removed.
    /// One from the future (the clock was set back) is served.
    [[nodiscard]] std::shared_ptr<const Platform::CachedUrlResponse> cachedResponse(
        const Platform::HttpRequest& request) override;
};

}  // namespace Tarnwick_API
