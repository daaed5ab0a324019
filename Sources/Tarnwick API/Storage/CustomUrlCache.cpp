#include <Tarnwick_API/Storage/CustomUrlCache.hpp>

#include <utility>

namespace Tarnwick_API {

void CustomUrlCache::storeCachedResponse(const std::shared_ptr<const Platform::CachedUrlResponse>& response,
                                         const Platform::HttpRequest& request) {
    if (response == nullptr) {
        return;
    }
    auto dated = *response;
    if (!dated.userInformation) {
        dated.userInformation.emplace();
    }
    dated.userInformation->insert_or_assign(std::string{cachedDateKey}, Platform::WallClock::now());
    UrlCache::storeCachedResponse(std::make_shared<const Platform::CachedUrlResponse>(std::move(dated)), request);
}

std::shared_ptr<const Platform::CachedUrlResponse> CustomUrlCache::cachedResponse(
    const Platform::HttpRequest& request) {
    auto response = UrlCache::cachedResponse(request);
    if (response == nullptr || !response->userInformation) {
        return nullptr;
    }
    const auto found = response->userInformation->find(cachedDateKey);
    const auto* const date =
        found == response->userInformation->end() ? nullptr : std::get_if<Platform::WallTime>(&found->second);
    if (date == nullptr) {
        return nullptr;
    }
    if (Platform::WallClock::now() - *date > expireInterval) {
        removeCachedResponseIfStill(response, request);
        return nullptr;
    }
    return response;
}

}  // namespace Tarnwick_API
