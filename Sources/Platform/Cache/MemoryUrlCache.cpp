#include <Platform/Cache/MemoryUrlCache.hpp>

#include <iterator>
#include <utility>

namespace Tarnwick_API::Platform {

void MemoryUrlCache::store(const std::string& key, UrlResponsePointer response, std::size_t size) {
    Entries made;
    made.push_back({key, std::move(response), size});
    Entries removed;
    const std::lock_guard lock{mutex_};
    if (const auto older = byKey_.find(key); older != byKey_.end()) {
        take(older->second, removed);
    }
    if (size >= capacity_) {
        return;
    }
    byKey_.emplace(made.front().key, made.begin());
    entries_.splice(entries_.begin(), made);
    usage_ += size;
    evict(removed);
}

UrlResponsePointer MemoryUrlCache::find(std::string_view key) {
    const std::lock_guard lock{mutex_};
    const auto found = byKey_.find(key);
    if (found == byKey_.end()) {
        return nullptr;
    }
    entries_.splice(entries_.begin(), entries_, found->second);
    return found->second->response;
}

void MemoryUrlCache::remove(std::string_view key) {
    Entries removed;
    const std::lock_guard lock{mutex_};
    if (const auto found = byKey_.find(key); found != byKey_.end()) {
        take(found->second, removed);
    }
}

void MemoryUrlCache::removeIfStill(std::string_view key, const UrlResponsePointer& expected) {
    Entries removed;
    const std::lock_guard lock{mutex_};
    const auto found = byKey_.find(key);
    if (found != byKey_.end() &&
        (found->second->response == expected || holdSame(*found->second->response, *expected))) {
        take(found->second, removed);
    }
}

void MemoryUrlCache::removeAll() {
    Entries removed;
    const std::lock_guard lock{mutex_};
    byKey_.clear();
    removed.swap(entries_);
    usage_ = 0;
}

std::size_t MemoryUrlCache::capacity() const {
    const std::lock_guard lock{mutex_};
    return capacity_;
}

std::size_t MemoryUrlCache::usage() const {
    const std::lock_guard lock{mutex_};
    return usage_;
}

void MemoryUrlCache::setCapacity(std::size_t capacity) {
    Entries removed;
    const std::lock_guard lock{mutex_};
    capacity_ = capacity;
    evict(removed);
}

void MemoryUrlCache::take(Entries::iterator entry, Entries& removed) {
    usage_ -= entry->size;
    byKey_.erase(entry->key);
    removed.splice(removed.end(), entries_, entry);
}

void MemoryUrlCache::evict(Entries& removed) {
    while (usage_ > capacity_) {
        take(std::prev(entries_.end()), removed);
    }
}

}  // namespace Tarnwick_API::Platform
