#pragma once

#include <Platform/Keychain/StoredKeychainItem.hpp>
#include <Platform/Sqlite/SqliteConnection.hpp>
#include <Platform/Sqlite/SqliteError.hpp>

#include <chrono>
#include <string>
#include <vector>

namespace Tarnwick_API::Platform {

/// The items in one SQLite file, through one connection. Every operation is a transaction: a process that dies in it
/// leaves the old items, and one that returns success has the new ones on the disk. All throw SqliteError; an open
/// transaction then goes with the connection.
///
/// A rollback journal, as the whole file is a few pages: a write-ahead log would save nothing and leave two more files
/// that hold secrets, where a journal is gone after each write. It costs a few disk flushes for a write.
class KeychainDatabase {
public:
    /// Opens the existing file; `timeout` is how long each lock of other processes is waited for.
    KeychainDatabase(const std::string& path, std::chrono::milliseconds timeout);

    [[nodiscard]] static KeychainStatus statusOf(const SqliteError& error) noexcept;

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
    /// Success when the items can be read, `itemNotFound` in a file that never had any.
    [[nodiscard]] KeychainStatus checkLayout();
    /// Runs what changes items; `itemNotFound` when it changes none.
    template <class... Parameters>
    [[nodiscard]] KeychainStatus change(const std::string& sql, const Parameters&... parameters);

    SqliteConnection connection_;
};

}  // namespace Tarnwick_API::Platform
