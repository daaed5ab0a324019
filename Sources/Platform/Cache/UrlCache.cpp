#include <Tarnwick_API/Platform/UrlCache.hpp>

#include <Platform/Application/UserFolders.hpp>
#include <Platform/Cache/CacheKey.hpp>
#include <Platform/Cache/MemoryUrlCache.hpp>

#include <mutex>
#include <utility>

namespace Platform {

namespace {

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

}  // namespace

class UrlCache::Storage {
public:
    explicit Storage(std::size_t memoryCapacity) : memory{memoryCapacity} {}

    MemoryUrlCache memory;
    std::size_t diskCapacity = 0;
};

UrlCache::UrlCache() : UrlCache{4 * mebibyte, 20 * mebibyte, std::nullopt} {
}

UrlCache::UrlCache(std::size_t memoryCapacity, std::size_t diskCapacity, std::optional<std::string> /*diskPath*/)
    : storage_{std::make_unique<Storage>(memoryCapacity)} {
    storage_->diskCapacity = diskCapacity;
}

UrlCache::~UrlCache() = default;

void UrlCache::storeCachedResponse(const std::shared_ptr<const CachedUrlResponse>& response,
                                   const HttpRequest& request) {
    if (response == nullptr || response->storagePolicy == UrlCacheStoragePolicy::notAllowed) {
        return;
    }
    auto stored = response;
    if (stored->body == nullptr) {
        auto whole = *stored;
        whole.body = std::make_shared<const Bytes>();
        stored = std::make_shared<const CachedUrlResponse>(std::move(whole));
    }
    const auto key = cacheKey(request);
    storage_->memory.store(key, stored, sizeOfEntry(key, *stored));
}

std::shared_ptr<const CachedUrlResponse> UrlCache::cachedResponse(const HttpRequest& request) {
    return storage_->memory.find(cacheKey(request));
}

void UrlCache::removeCachedResponse(const HttpRequest& request) {
    storage_->memory.remove(cacheKey(request));
}

void UrlCache::removeCachedResponseIfStill(const std::shared_ptr<const CachedUrlResponse>& response,
                                           const HttpRequest& request) {
    if (response != nullptr && response->body != nullptr) {
        storage_->memory.removeIfStill(cacheKey(request), response);
    }
}

void UrlCache::removeAllCachedResponses() {
    storage_->memory.removeAll();
}

std::size_t UrlCache::memoryCapacity() const {
    return storage_->memory.capacity();
}

std::size_t UrlCache::diskCapacity() const {
    return storage_->diskCapacity;
}

void UrlCache::setMemoryCapacity(std::size_t bytes) {
    storage_->memory.setCapacity(bytes);
}

void UrlCache::setDiskCapacity(std::size_t bytes) {
    storage_->diskCapacity = bytes;
}

std::size_t UrlCache::currentMemoryUsage() const {
    return storage_->memory.usage();
}

std::size_t UrlCache::currentDiskUsage() const {
    return 0;
}

std::string UrlCache::defaultPath() {
    const auto folder = userFolder("XDG_CACHE_HOME", ".cache");
    return folder.empty() ? std::string{} : (folder / applicationFolderName()).string();
}

}  // namespace Platform
