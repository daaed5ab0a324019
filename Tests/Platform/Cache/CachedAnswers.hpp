#pragma once

#include <Tarnwick_API/Platform/UrlCache.hpp>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

inline Platform::HttpRequest get(std::string_view path, Platform::HttpHeaders headers = {}) {
    const auto url = Platform::Url::fromString(std::string{"https://h/"}.append(path)).value();
    return {Platform::HttpMethod::get, url, {}, Platform::ParameterEncoding::url, std::move(headers)};
}

inline std::shared_ptr<const Platform::CachedUrlResponse> answer(
    std::string body, std::optional<Platform::UserInformation> userInformation = std::nullopt,
    Platform::UrlCacheStoragePolicy policy = Platform::UrlCacheStoragePolicy::allowed) {
    Platform::CachedUrlResponse response;
    response.response.status = 200;
    response.body = std::make_shared<const Platform::Bytes>(std::move(body));
    response.userInformation = std::move(userInformation);
    response.storagePolicy = policy;
    return std::make_shared<const Platform::CachedUrlResponse>(std::move(response));
}

/// An answer that takes `size` bytes of a cache with the key of `get(path)`.
inline std::shared_ptr<const Platform::CachedUrlResponse> answerTaking(std::size_t size, std::string_view path) {
    const std::size_t key = std::string_view{"GET https://h/"}.size() + path.size();
    return answer(std::string(size - std::min(size, key), 'x'));
}

/// The body that the cache has, or "-".
inline std::string bodyIn(Platform::UrlCache& cache, std::string_view path) {
    const auto found = cache.cachedResponse(get(path));
    return found == nullptr ? "-" : *found->body;
}
