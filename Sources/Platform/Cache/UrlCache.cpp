#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>

#include <Platform/Application/ApplicationName.hpp>
#include <Platform/Application/UserFolders.hpp>
#include <Platform/Cache/CacheKey.hpp>
#include <Platform/Cache/DiskUrlCache.hpp>
#include <Platform/Cache/MemoryUrlCache.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <filesystem>
#include <mutex>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

}  // namespace

class UrlCache::Storage {
public:
    Storage(std::size_t memoryCapacity, std::size_t diskCapacity, const std::filesystem::path& folder)
        : disk_{folder, diskCapacity}, memory_{memoryCapacity} {}

    [[nodiscard]] MemoryUrlCache& memory() { return memory_; }

    /// Runs `work` on memory and disk as one step. Look-ups that memory answers do not wait for it.
    template <class Work>
    void with(Work work) {
        std::optional<std::string> complaint;
        {
            const std::lock_guard lock{changes_};
            work(memory_, disk_);
            complaint = disk_.takeComplaint();
        }
        // Outside the lock: the host's sink may use this cache.
        if (complaint && DebugChannel::isOpen()) {
            DebugChannel::write(*complaint, "UrlCache");
        }
    }

    UrlResponsePointer find(const std::string& key) {
        auto response = memory_.find(key);
        if (response == nullptr) {
            with([&](MemoryUrlCache& memory, DiskUrlCache& disk) {
                response = memory.find(key);  // another thread may have been quicker
                if (response == nullptr) {
                    response = disk.find(key);
                    if (response != nullptr) {
                        memory.store(key, response, sizeOfEntry(key, *response));
                    }
                }
            });
        }
        if (response != nullptr && response->storagePolicy == UrlCacheStoragePolicy::allowed && disk_.noteUse(key)) {
            with([](MemoryUrlCache& /*memory*/, DiskUrlCache& disk) { disk.catchUp(); });
        }
        return response;
    }

private:
    std::mutex changes_;
    /// Whatever uses SQLite in a child of `fork` shall find SQLite's own locks free.
    HeldOverFork heldOverFork_{changes_, HeldOverFork::Order::outer};
    DiskUrlCache disk_;
    MemoryUrlCache memory_;
};

UrlCache::UrlCache() : UrlCache{4 * mebibyte, 20 * mebibyte, std::nullopt} {
}

UrlCache::UrlCache(std::size_t memoryCapacity, std::size_t diskCapacity, std::optional<std::string> diskPath)
    : storage_{
          std::make_unique<Storage>(memoryCapacity, diskCapacity, diskPath ? *std::move(diskPath) : defaultPath())} {
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
    storage_->with([&](MemoryUrlCache& memory, DiskUrlCache& disk) {
        memory.store(key, stored, sizeOfEntry(key, *stored));
        if (stored->storagePolicy == UrlCacheStoragePolicy::allowed) {
            disk.store(key, *stored);
        } else {
            disk.remove(key);  // or the replaced entry would come back
        }
    });
}

std::shared_ptr<const CachedUrlResponse> UrlCache::cachedResponse(const HttpRequest& request) {
    return storage_->find(cacheKey(request));
}

void UrlCache::removeCachedResponse(const HttpRequest& request) {
    const auto key = cacheKey(request);
    storage_->with([&](MemoryUrlCache& memory, DiskUrlCache& disk) {
        memory.remove(key);
        disk.remove(key);
    });
}

void UrlCache::removeCachedResponseIfStill(const std::shared_ptr<const CachedUrlResponse>& response,
                                           const HttpRequest& request) {
    if (response == nullptr || response->body == nullptr) {
        return;
    }
    const auto key = cacheKey(request);
    storage_->with([&](MemoryUrlCache& memory, DiskUrlCache& disk) {
        memory.removeIfStill(key, response);
        disk.removeIfStill(key, *response);
    });
}

void UrlCache::removeAllCachedResponses() {
    storage_->with([](MemoryUrlCache& memory, DiskUrlCache& disk) {
        memory.removeAll();
        disk.removeAll();
    });
}

std::size_t UrlCache::memoryCapacity() const {
    return storage_->memory().capacity();
}

std::size_t UrlCache::diskCapacity() const {
    std::size_t capacity = 0;
    storage_->with([&](MemoryUrlCache& /*memory*/, DiskUrlCache& disk) { capacity = disk.capacity(); });
    return capacity;
}

void UrlCache::setMemoryCapacity(std::size_t bytes) {
    storage_->memory().setCapacity(bytes);
}

void UrlCache::setDiskCapacity(std::size_t bytes) {
    storage_->with([&](MemoryUrlCache& /*memory*/, DiskUrlCache& disk) { disk.setCapacity(bytes); });
}

std::size_t UrlCache::currentMemoryUsage() const {
    return storage_->memory().usage();
}

std::size_t UrlCache::currentDiskUsage() const {
    std::size_t usage = 0;
    storage_->with([&](MemoryUrlCache& /*memory*/, DiskUrlCache& disk) { usage = disk.usage(); });
    return usage;
}

std::string UrlCache::defaultPath() {
    const auto folder = userCacheFolder();
    return folder.empty() ? std::string{} : (folder / applicationFolderName()).string();
}

}  // namespace Tarnwick_API::Platform
