#pragma once

#include <Platform/Cache/CacheDatabase.hpp>
#include <Platform/Cache/UseLog.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>

namespace Tarnwick_API::Platform {

/// The entries on the disk, in the file "Cache.db" of a folder. Opened when first needed; made by the first store.
/// Whatever goes wrong leaves the file as it is, and is told once; what another process has locked is left out, told
/// once for each time, and used again when it is free. One thread at a time, but for `noteUse`.
class DiskUrlCache {
public:
    /// No folder, or a capacity of 0: no disk is touched.
    DiskUrlCache(const std::filesystem::path& folder, std::size_t capacity);
    DiskUrlCache(const DiskUrlCache&) = delete;
    DiskUrlCache& operator=(const DiskUrlCache&) = delete;
    ~DiskUrlCache();

    /// Counts a look-up as a use, also one that memory answered. Whether it is time for `catchUp`. Thread: any.
    [[nodiscard]] bool noteUse(const std::string& key) { return uses_.note(key); }
    /// Writes what waits for the next change: uses, and removals that are owed.
    void catchUp();

    [[nodiscard]] UrlResponsePointer find(const std::string& key);
    void store(const std::string& key, const CachedUrlResponse& response);
    void remove(const std::string& key);
    void removeIfStill(const std::string& key, const CachedUrlResponse& expected);
    void removeAll();

    [[nodiscard]] std::size_t usage();
    [[nodiscard]] std::size_t capacity() const { return capacity_; }
    void setCapacity(std::size_t capacity);

    /// What there is to tell of the disk; once.
    [[nodiscard]] std::optional<std::string> takeComplaint();

private:
    enum class Opening { existing, made };
    using Change = std::function<void(CacheDatabase::Transaction&)>;

    [[nodiscard]] bool isOff() const { return hasFailed_ || file_.empty() || capacity_ == 0 || isInherited(); }
    /// Whether the connection is that of a parent of this process. SQLite must neither use it nor close it here.
    [[nodiscard]] bool isInherited() const { return database_ != nullptr && openedIn_ != forkGeneration(); }
    CacheDatabase* open(Opening opening);
    bool change(Opening opening, const Change& work);
    /// Whether `work` met no error of the file.
    template <class Work>
    bool attempt(Work work);
    /// `isFinal`: no later try will do better with this file.
    void fail(const char* reason, bool isFinal);
    void meetLock();
    void owe(const std::string& key);
    [[nodiscard]] bool owesAnything() const { return owesAll_ || !owedRemovals_.empty(); }

    std::filesystem::path file_;
    std::size_t capacity_;
    LockPatience patience_;
    std::unique_ptr<CacheDatabase> database_;
    unsigned openedIn_ = 0;
    UseLog uses_;
    /// Entries that are on the disk still, though they have been removed or replaced: the disk was full or locked, say.
    /// They count as absent, and go with the next change that succeeds.
    std::set<std::string, std::less<>> owedRemovals_;
    bool owesAll_ = false;
    /// The latest change or look-up met another process's lock, and no change has succeeded since.
    bool isLocked_ = false;
    /// No more of this file.
    bool hasFailed_ = false;
    std::string complaint_;
    bool hasComplained_ = false;
};

}  // namespace Tarnwick_API::Platform
