#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace Tarnwick_API::Platform {

/// Bytes in a user information, which are not text.
struct UserInformationBytes {
    Bytes bytes;

    friend bool operator==(const UserInformationBytes&, const UserInformationBytes&) = default;
};

/// A value of a user information. Its type survives the disk: a real is not a date afterwards.
using UserInformationValue = std::variant<std::string, std::int64_t, double, bool, WallTime, UserInformationBytes>;

/// What whoever stores an answer adds to it, by name.
using UserInformation = std::map<std::string, UserInformationValue, std::less<>>;

/// Where an answer may be kept.
enum class UrlCacheStoragePolicy {
    allowed,
    allowedInMemoryOnly,
    notAllowed,
};

/// One stored answer. Immutable once it is held by a `std::shared_ptr<const ...>`, as caches hold and give it.
struct CachedUrlResponse {
    HttpResponse response;
    /// Never null in an answer of a cache.
    std::shared_ptr<const Bytes> body;
    /// None is not the same as an empty one.
    std::optional<UserInformation> userInformation = std::nullopt;
    UrlCacheStoragePolicy storagePolicy = UrlCacheStoragePolicy::allowed;
};

/// Answers by the requests that led to them, in memory and on disk. It is a store alone: who uses it decides what may
/// be stored and what of it is still good.
///
/// The key is the method and the absolute URL without its fragment, scheme and host in lower case; headers and bodies
/// of requests are no part of it. When a capacity would be passed, the least recently used entries go first: look-ups
/// and stores are uses. An entry as large as a capacity, or larger, is not kept there. When a store returns, the entry
/// is in the file, where it outlives the process, though the latest may be lost when the power fails; usage then is
/// within the capacities, whatever other processes store in the same file at the same time. Look-ups ask the memory
/// first: it does not notice that another process has replaced or removed an entry.
///
/// Errors: none. Without a usable disk the cache goes on in memory and says so once on the debug channel; what it can't
/// read counts as absent. It deletes and changes nothing that it has not made. The file, "Cache.db", is private (0600)
/// and must not be a symbolic link. Thread: any. Operations may wait for the disk, so none belongs on the main queue.
/// For another process that has the file locked they wait a tenth of a second in all, not each; then, until it is free,
/// what is stored goes to the memory alone, and what that replaces counts as absent. The debug channel tells it, once
/// for each time. A process does not use a cache that it had before it forked. What an override throws costs a session
/// this cache for that request alone; the debug channel tells it.
class TARNWICK_API_EXPORT UrlCache {
public:
    /// 4 MiB of memory, 20 MiB of disk, in `defaultPath()`.
    UrlCache();

    /// Capacities in bytes; 0 keeps nothing there, and with a disk capacity of 0 no file is touched. `diskPath` is the
    /// folder of the cache's files, made (0700) by the first store when missing; none stands for `defaultPath()`, and
    /// the empty text for no disk.
    UrlCache(std::size_t memoryCapacity, std::size_t diskCapacity, std::optional<std::string> diskPath);

    UrlCache(const UrlCache&) = delete;
    UrlCache& operator=(const UrlCache&) = delete;
    virtual ~UrlCache();

    /// Replaces the request's entry. With the policy `notAllowed` nothing is stored and an older entry stays. Null
    /// stores nothing; a missing body counts as an empty one.
    virtual void storeCachedResponse(const std::shared_ptr<const CachedUrlResponse>& response,
                                     const HttpRequest& request);

    /// The request's entry, or null.
    [[nodiscard]] virtual std::shared_ptr<const CachedUrlResponse> cachedResponse(const HttpRequest& request);

    /// Removes the request's entry, if there is one.
    virtual void removeCachedResponse(const HttpRequest& request);
    /// Removes the request's entry if it still holds the same as `response`: not one that another thread or process has
    /// stored since.
    void removeCachedResponseIfStill(const std::shared_ptr<const CachedUrlResponse>& response,
                                     const HttpRequest& request);
    /// Removes every entry, in memory and on disk.
    virtual void removeAllCachedResponses();

    [[nodiscard]] std::size_t memoryCapacity() const;
    [[nodiscard]] std::size_t diskCapacity() const;
    /// A lower capacity takes effect at once.
    void setMemoryCapacity(std::size_t bytes);
    void setDiskCapacity(std::size_t bytes);

    /// Bytes that the entries take: bodies, headers, user information and keys.
    [[nodiscard]] std::size_t currentMemoryUsage() const;
    [[nodiscard]] std::size_t currentDiskUsage() const;

    /// `$XDG_CACHE_HOME` (when absolute) or `~/.cache`, on macOS `~/Library/Caches`, then the main bundle's identifier
    /// or the program's name. Empty when the user has no home; such a cache has no disk.
    [[nodiscard]] static std::string defaultPath();

    /// The process-wide cache: the one given to `setShared`, or else one with the defaults, made at the first use.
    [[nodiscard]] static std::shared_ptr<UrlCache> shared();

    /// Installs the process-wide cache. Sessions without a cache of their own use it from their next request on, and
    /// use none while nobody has installed one. Null removes it.
    static void setShared(std::shared_ptr<UrlCache> cache);

    /// The cache given to `setShared`; null without one.
    [[nodiscard]] static std::shared_ptr<UrlCache> installed();

private:
    class TARNWICK_API_NO_EXPORT Storage;
    std::unique_ptr<Storage> storage_;
};

}  // namespace Tarnwick_API::Platform
