#include <Platform/Cache/DiskUrlCache.hpp>

#include <Platform/Application/PrivateFile.hpp>

#include <cerrno>
#include <mutex>
#include <system_error>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::size_t mostOwedRemovals = 1000;

/// Held from making a file to opening it: the descriptor that makes it, when it is closed, takes with it the POSIX
/// locks of all connections of this process to that file.
std::mutex& fileMaking() {
    static auto& mutex = *std::make_unique<std::mutex>().release();
    return mutex;
}

[[noreturn]] void throwSystemError(int number) {
    throw std::system_error{number, std::generic_category()};
}

/// The path to open; empty when there is no file.
std::string findCacheFile(const std::filesystem::path& file) {
    auto found = findPrivateFile(file);
    if (found.error == ENOENT) {
        return {};
    }
    if (found.error != 0) {
        throwSystemError(found.error);
    }
    // SQLite would follow links there.
    for (const auto* const suffix : {"-wal", "-shm", "-journal"}) {
        const int error = findPrivateFile(found.path + suffix).error;
        if (error != 0 && error != ENOENT) {
            throwSystemError(error);
        }
    }
    return std::move(found.path);
}

}  // namespace

DiskUrlCache::DiskUrlCache(const std::filesystem::path& folder, std::size_t capacity) : capacity_{capacity} {
    if (folder.empty() || folder.native().find('\0') != std::string::npos) {
        return;
    }
    // A later change of the working folder shall not lose the entries.
    std::error_code error;
    const auto absolute = std::filesystem::absolute(folder, error);
    file_ = (error ? folder : absolute) / "Cache.db";
}

DiskUrlCache::~DiskUrlCache() {
    catchUp();
    if (isInherited()) {
        static_cast<void>(database_.release());  // NOLINT(bugprone-unused-return-value)
    }
}

void DiskUrlCache::catchUp() {
    if (!isOff() && (database_ != nullptr || owesAnything())) {
        change(Opening::existing, [](CacheDatabase::Transaction& /*nothing but what is due*/) {});
    }
}

UrlResponsePointer DiskUrlCache::find(const std::string& key) {
    if (isLocked_ && owesAnything()) {
        catchUp();  // as soon as the file is free: who ends before that leaves to others what should be gone
    }
    if (isOff() || owesAll_ || owedRemovals_.contains(key)) {
        return nullptr;
    }
    std::optional<EncodedResponse> found;
    const auto isRead = attempt([&] {
        if (auto* const database = open(Opening::existing)) {
            found = database->find(key);
        }
    });
    if (!isRead || !found) {
        return nullptr;
    }
    if (auto response = decode(key, *found)) {
        return response;
    }
    remove(key);
    return nullptr;
}

void DiskUrlCache::store(const std::string& key, const CachedUrlResponse& response) {
    if (sizeOfEntry(key, response) >= capacity_) {
        remove(key);
        return;
    }
    const auto encoded = encode(key, response);
    if (!change(Opening::made, [&](auto& transaction) { transaction.store(key, encoded); })) {
        owe(key);
    }
}

void DiskUrlCache::remove(const std::string& key) {
    if (!change(Opening::existing, [&](auto& transaction) { transaction.remove(key); })) {
        owe(key);
    }
}

void DiskUrlCache::removeIfStill(const std::string& key, const CachedUrlResponse& expected) {
    if (isOff()) {
        owe(key);
        return;
    }
    const auto encoded = encode(key, expected);
    if (!change(Opening::existing, [&](auto& transaction) { transaction.removeIfStill(key, encoded); })) {
        owe(key);
    }
}

void DiskUrlCache::removeAll() {
    owesAll_ = true;
    change(Opening::existing, [](auto& transaction) { transaction.shrinkFile(); });
}

std::size_t DiskUrlCache::usage() {
    if (isOff()) {
        return 0;
    }
    std::size_t size = 0;
    attempt([&] {
        if (auto* const database = open(Opening::existing)) {
            size = database->usage();
        }
    });
    return size;
}

void DiskUrlCache::setCapacity(std::size_t capacity) {
    const auto former = std::exchange(capacity_, capacity);
    if (capacity < former) {
        capacity_ = former;  // not off yet
        change(Opening::existing, [&](auto& transaction) {
            transaction.evict(capacity);
            transaction.shrinkFile();
        });
        capacity_ = capacity;
    }
}

std::optional<std::string> DiskUrlCache::takeComplaint() {
    return complaint_.empty() ? std::nullopt : std::optional{std::exchange(complaint_, {})};
}

CacheDatabase* DiskUrlCache::open(Opening opening) {
    if (database_ != nullptr && !database_->isInPlace()) {
        database_.reset();  // removed by the user, who need not wait for our exit to get a new one
    }
    if (database_ != nullptr) {
        return database_.get();
    }
    const std::lock_guard lock{fileMaking()};
    auto path = findCacheFile(file_);
    if (path.empty() && opening == Opening::made) {
        if (const int error = createPrivateFile(file_); error != 0) {
            throwSystemError(error);
        }
        path = findCacheFile(file_);
    }
    if (!path.empty()) {
        database_ = std::make_unique<CacheDatabase>(path, patience_);
        openedIn_ = forkGeneration();
    }
    return database_.get();
}

/// Whether the change is done, with all that was owed; without a file there is nothing to remove.
bool DiskUrlCache::change(Opening opening, const Change& work) {
    if (isOff()) {
        return false;
    }
    const auto isDone = attempt([&] {
        if (auto* const database = open(opening)) {
            CacheDatabase::Transaction transaction{*database};
            patience_.fileIsFree();
            if (owesAll_) {
                transaction.removeAll();
            }
            for (const auto& key : owedRemovals_) {
                transaction.remove(key);
            }
            for (const auto& key : uses_.take()) {
                transaction.touch(key);
            }
            work(transaction);
            transaction.evict(capacity_);
            transaction.commit();
        }
    });
    if (isDone) {
        isLocked_ = false;
        owesAll_ = false;
        owedRemovals_.clear();
    }
    return isDone;
}

template <class Work>
bool DiskUrlCache::attempt(Work work) {
    try {
        work();
        return true;
    } catch (const SqliteError& error) {
        if (CacheDatabase::isLock(error)) {
            meetLock();
        } else {
            fail(error.what(), CacheDatabase::isFinal(error));
        }
    } catch (const std::system_error& error) {
        fail(error.what(), error.code().value() == ENOTSUP);
    }
    return false;
}

void DiskUrlCache::fail(const char* reason, bool isFinal) {
    if (isFinal) {
        hasFailed_ = true;
        if (database_ != nullptr) {
            database_->leaveFileAsItIs();
            database_.reset();
        }
    }
    if (!std::exchange(hasComplained_, true)) {
        complaint_.append("The URL cache goes on in memory, without ").append(file_.string()).append(": ");
        complaint_.append(reason);
    }
}

void DiskUrlCache::meetLock() {
    if (!std::exchange(isLocked_, true)) {
        complaint_.append("The URL cache does without ").append(file_.string());
        complaint_.append(" while another process has it locked");
    }
}

void DiskUrlCache::owe(const std::string& key) {
    if (hasFailed_ || file_.empty() || owesAll_) {
        return;
    }
    owedRemovals_.insert(key);
    owesAll_ = owedRemovals_.size() > mostOwedRemovals;
}

}  // namespace Tarnwick_API::Platform
