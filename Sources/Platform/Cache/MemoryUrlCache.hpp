#pragma once

#include <Platform/Cache/StoredUrlResponse.hpp>

#include <list>
#include <mutex>
#include <string>
#include <unordered_map>

namespace Tarnwick_API::Platform {

/// The entries in memory, in the order of their last use. Thread: any. Entries that go are destroyed outside the lock:
/// they may be large, and hold what is not ours.
class MemoryUrlCache {
public:
    explicit MemoryUrlCache(std::size_t capacity) : capacity_{capacity} {}

    /// Replaces the entry of `key`; one as large as the capacity only removes it.
    void store(const std::string& key, UrlResponsePointer response, std::size_t size);
    /// The entry, used last from now on, or null.
    [[nodiscard]] UrlResponsePointer find(std::string_view key);
    void remove(std::string_view key);
    /// Removes the entry of `key` when it holds the same as `expected`.
    void removeIfStill(std::string_view key, const UrlResponsePointer& expected);
    void removeAll();

    [[nodiscard]] std::size_t capacity() const;
    [[nodiscard]] std::size_t usage() const;
    void setCapacity(std::size_t capacity);

private:
    struct Entry {
        std::string key;
        UrlResponsePointer response;
        std::size_t size = 0;
    };
    using Entries = std::list<Entry>;

    void take(Entries::iterator entry, Entries& removed);
    void evict(Entries& removed);

    mutable std::mutex mutex_;
    std::size_t capacity_;
    std::size_t usage_ = 0;
    Entries entries_;  // last used first
    std::unordered_map<std::string_view, Entries::iterator> byKey_;
};

}  // namespace Tarnwick_API::Platform
