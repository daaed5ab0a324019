#pragma once

#include <Platform/Keychain/StoredKeychainItem.hpp>

#include <chrono>
#include <memory>
#include <string_view>
#include <vector>

struct sqlite3;

namespace Tarnwick_API::Platform {

/// The items in one SQLite file, through one connection. Every operation is a transaction: a process that dies in it
/// leaves the old items, and one that returns success has the new ones on the disk.
///
/// A rollback journal, as the whole file is a few pages: a write-ahead log would save nothing and leave two more files
/// that hold secrets, where a journal is gone after each write. It costs a few disk flushes for a write.
class KeychainDatabase {
public:
    /// Opens the existing file; `timeout` is how long each lock of other processes is waited for. Failure is told by
    /// the operations.
    KeychainDatabase(const std::string& path, std::chrono::milliseconds timeout);

    struct Found {
        KeychainStatus status = KeychainStatus::success;
        StoredKeychainItem item;
    };
    /// The oldest match.
    [[nodiscard]] Found first(const KeychainQuery& query);
    /// Changes the oldest match.
    [[nodiscard]] KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes);
    [[nodiscard]] KeychainStatus add(const StoredKeychainItem& item);
    /// Removes every match.
    [[nodiscard]] KeychainStatus remove(const KeychainQuery& target);
    /// Appends all items to `items`, the oldest first.
    [[nodiscard]] KeychainStatus everything(std::vector<StoredKeychainItem>& items);
    /// Removes those of `items` that are still the same, in one transaction.
    [[nodiscard]] KeychainStatus removeUnchanged(const std::vector<StoredKeychainItem>& items);

private:
    class Statement;
    struct Close {
        void operator()(sqlite3* connection) const noexcept;
    };

    KeychainStatus statusOf(int code) const;
    int lastFileError() const;
    KeychainStatus run(std::string_view sql);
    /// Success when the items can be read, `itemNotFound` in a file that never had any.
    KeychainStatus checkLayout();
    KeychainStatus change(Statement& statement);

    std::unique_ptr<sqlite3, Close> connection_;
    KeychainStatus opened_ = KeychainStatus::success;
};

}  // namespace Tarnwick_API::Platform
