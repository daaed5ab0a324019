#pragma once

#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

inline Tarnwick_API::Platform::HttpRequest get(std::string_view path,
                                               Tarnwick_API::Platform::HttpHeaders headers = {}) {
    const auto url = Tarnwick_API::Platform::Url::fromString(std::string{"https://h/"}.append(path)).value();
    return {Tarnwick_API::Platform::HttpMethod::get,
            url,
            {},
            Tarnwick_API::Platform::ParameterEncoding::url,
            std::move(headers)};
}

inline std::shared_ptr<const Tarnwick_API::Platform::CachedUrlResponse> answer(
    std::string body, std::optional<Tarnwick_API::Platform::UserInformation> userInformation = std::nullopt,
    Tarnwick_API::Platform::UrlCacheStoragePolicy policy = Tarnwick_API::Platform::UrlCacheStoragePolicy::allowed) {
    Tarnwick_API::Platform::CachedUrlResponse response;
    response.response.status = 200;
    response.body = std::make_shared<const Tarnwick_API::Platform::Bytes>(std::move(body));
    response.userInformation = std::move(userInformation);
    response.storagePolicy = policy;
    return std::make_shared<const Tarnwick_API::Platform::CachedUrlResponse>(std::move(response));
}

/// An answer that takes `size` bytes of a cache with the key of `get(path)`.
inline std::shared_ptr<const Tarnwick_API::Platform::CachedUrlResponse> answerTaking(std::size_t size,
                                                                                     std::string_view path) {
    const std::size_t key = std::string_view{"GET https://h/"}.size() + path.size();
    return answer(std::string(size - std::min(size, key), 'x'));
}

/// The body that the cache has, or "-".
inline std::string bodyIn(Tarnwick_API::Platform::UrlCache& cache, std::string_view path) {
    const auto found = cache.cachedResponse(get(path));
    return found == nullptr ? "-" : *found->body;
}
