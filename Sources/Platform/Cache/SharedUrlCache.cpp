#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <Platform/Application/ProcessWide.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedCache{&ProcessValues::installedUrlCache};
constexpr ProcessWide builtInCache{&ProcessValues::builtInUrlCache};

}  // namespace

std::shared_ptr<UrlCache> UrlCache::shared() {
    if (auto cache = installed()) {
        return cache;
    }
    return builtInCache.getOr([] { return std::make_shared<UrlCache>(); });
}

void UrlCache::setShared(std::shared_ptr<UrlCache> cache) {
    installedCache.set(std::move(cache));
}

std::shared_ptr<UrlCache> UrlCache::installed() {
    return installedCache.get();
}

}  // namespace Tarnwick_API::Platform
