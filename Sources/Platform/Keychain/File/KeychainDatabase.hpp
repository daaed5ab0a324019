#pragma once

#include <Platform/Keychain/File/KeychainFileContent.hpp>
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
///
/// Files of the first layout, which had no times, are read as they are and brought to the present one by the first
/// write.
class KeychainDatabase {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Opens the existing file and changes nothing; the locks of other processes are waited for until `deadline`.
    KeychainDatabase(const std::string& path, Deadline deadline);
    KeychainDatabase(const KeychainDatabase&) = delete;
    KeychainDatabase& operator=(const KeychainDatabase&) = delete;

    [[nodiscard]] static KeychainStatus statusOf(const SqliteError& error) noexcept;
    /// Whether a keychain's file, or what is in it, is damaged.
    [[nodiscard]] static bool meansDamage(const SqliteError& error) noexcept;

    /// Comes before every operation; on what is neither a keychain nor empty, none may follow but `takeForItself`.
    [[nodiscard]] KeychainFileContent begin();

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
    /// Removes those of `items` that are still the same, all at once, and notes that items have moved elsewhere.
    [[nodiscard]] KeychainStatus removeMoved(const std::vector<StoredKeychainItem>& items);
    [[nodiscard]] bool haveItemsMoved();

    /// Waits until no other process uses the file, and keeps it so until the connection closes: `success`,
    /// `notAvailable` when another one uses it until the deadline, `itemNotFound` when the path is another file's by
    /// now: a process that found the same damage may have been quicker. The one operation that a damaged file is good
    /// for; no other may follow it.
    [[nodiscard]] KeychainStatus takeForItself();

private:
    /// Success when the items can be read, `itemNotFound` in a file that never had any.
    [[nodiscard]] KeychainStatus checkLayout();
    /// Begins a transaction, and has the present layout in a file that has one.
    [[nodiscard]] KeychainStatus beginWriting();
    [[nodiscard]] std::string selection() const;
    /// When the file was last written: the best that is known of an item of the first layout.
    [[nodiscard]] std::int64_t fileTime() const;
    /// Runs what changes items; `itemNotFound` when it changes none.
    template <class... Parameters>
    [[nodiscard]] KeychainStatus change(const std::string& sql, const Parameters&... parameters);

    std::string path_;
    Deadline deadline_;
    SqliteConnection connection_;
    std::int64_t layout_ = 0;
};

}  // namespace Tarnwick_API::Platform
