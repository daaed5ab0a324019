#include <Platform/Keychain/File/FileKeychainStore.hpp>

#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Keychain/File/KeychainDatabase.hpp>
#include <Platform/Keychain/File/KeychainFile.hpp>

#include <mutex>
#include <system_error>
#include <utility>

#include <sys/stat.h>

namespace Tarnwick_API::Platform {

namespace {

/// Held through every call of every file store: the descriptor that makes a file, when it is closed, takes with it the
/// POSIX locks of all connections of this process to that file. `fork` waits for it too: a child that inherited a
/// connection in use could open the file no more.
std::mutex& fileAccess() {
    static std::mutex mutex;
    static const HeldOverFork heldOverFork{mutex};
    return mutex;
}

/// The status of `work` on the file at `path`, or that of finding it.
template <class Work>
KeychainStatus onFile(const std::filesystem::path& path, std::chrono::milliseconds timeout, Work work) {
    const auto file = locateKeychainFile(path);
    if (file.status != KeychainStatus::success) {
        return file.status;
    }
    try {
        KeychainDatabase database{file.path, timeout};
        return work(database);
    } catch (const SqliteError& error) {
        return KeychainDatabase::statusOf(error);
    }
}

}  // namespace

FileKeychainStore::FileKeychainStore(const std::string& path, std::chrono::milliseconds timeout)
    : path_{path}, timeout_{timeout} {
    // A later change of the working folder shall not lose the items.
    std::error_code error;
    if (auto absolute = std::filesystem::absolute(path_, error); !error) {
        path_ = std::move(absolute);
    }
}

KeychainAnswer FileKeychainStore::copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) {
    const std::lock_guard lock{fileAccess()};
    KeychainAnswer answer;
    answer.status = onFile(path_, timeout_, [&](KeychainDatabase& database) {
        auto found = database.first(query);
        if (found.status == KeychainStatus::success) {
            answer = answerShowing(std::move(found.item), wanted);
        }
        return found.status;
    });
    return answer;
}

KeychainStatus FileKeychainStore::update(const KeychainQuery& target, const KeychainChanges& changes) {
    const std::lock_guard lock{fileAccess()};
    return onFile(path_, timeout_, [&](KeychainDatabase& database) { return database.update(target, changes); });
}

KeychainStatus FileKeychainStore::add(const KeychainItem& item) {
    const std::lock_guard lock{fileAccess()};
    if (const auto status = createKeychainFile(path_); status != KeychainStatus::success) {
        return status;
    }
    return onFile(path_, timeout_, [&](KeychainDatabase& database) {
        return database.add(
            {item.service, item.account, item.label, item.comment, item.data, freshPersistentReference()});
    });
}

KeychainStatus FileKeychainStore::remove(const KeychainQuery& target) {
    const std::lock_guard lock{fileAccess()};
    return onFile(path_, timeout_, [&](KeychainDatabase& database) { return database.remove(target); });
}

KeychainStoreState FileKeychainStore::state() {
    auto status = copyMatching({}, {}).status;
    if (status == KeychainStatus::itemNotFound) {
        status = KeychainStatus::success;
    }
    return {"private file", path_.string(), status};
}

FileKeychainStore::Content FileKeychainStore::everything() {
    const std::lock_guard lock{fileAccess()};
    Content content;
    content.status = onFile(path_, timeout_, [&](KeychainDatabase& database) {
        // Before the reading: what is written meanwhile is not older than this.
        struct stat found {};
        if (::stat(path_.c_str(), &found) == 0) {
            content.writtenAt = std::chrono::system_clock::from_time_t(found.st_mtime);
        }
        return database.everything(content.items);
    });
    if (content.status == KeychainStatus::itemNotFound) {
        content.status = KeychainStatus::success;
    }
    return content;
}

KeychainStatus FileKeychainStore::removeUnchanged(const std::vector<StoredKeychainItem>& items) {
    const std::lock_guard lock{fileAccess()};
    return onFile(path_, timeout_, [&](KeychainDatabase& database) { return database.removeUnchanged(items); });
}

std::shared_ptr<KeychainStore> makeFileKeychainStore(const std::string& path) {
    return std::make_shared<FileKeychainStore>(path);
}

}  // namespace Tarnwick_API::Platform
