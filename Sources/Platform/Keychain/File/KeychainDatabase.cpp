#include <Platform/Keychain/File/KeychainDatabase.hpp>

#include <Platform/Keychain/File/KeychainFile.hpp>
#include <Platform/Keychain/File/ModificationTime.hpp>
#include <Platform/Sqlite/SqliteStatement.hpp>

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
#include <thread>

#include <sqlite3.h>
#include <sys/stat.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::int64_t firstLayout = 1;
constexpr std::int64_t presentLayout = 2;

// secure_delete: what was a secret is overwritten with zeros. temp_store: nothing of an item goes to another folder.
constexpr const char* settings =
    "PRAGMA secure_delete = ON; PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON; PRAGMA synchronous = EXTRA";

constexpr const char* restOfFirstLayout = ", UNIQUE (account, service)) STRICT";

// Times are microseconds since 1970. The mark is that of `keychainApplicationId`.
constexpr const char* stepToPresentLayout =
    "ALTER TABLE item ADD COLUMN accessibility TEXT NOT NULL DEFAULT 'always';"
    "ALTER TABLE item ADD COLUMN written INTEGER NOT NULL DEFAULT 0;"
    "CREATE TABLE store (items_have_moved INTEGER NOT NULL) STRICT; INSERT INTO store VALUES (0);"
    "PRAGMA application_id = 0x54774B63; PRAGMA user_version = 2";

constexpr std::string_view matching = "(?1 IS NULL OR service = ?1) AND (?2 IS NULL OR account = ?2)";

std::string withMatching(std::string_view before, std::string_view after) {
    return std::string{before}.append(matching).append(after);
}

/// The item in a row of `selection`.
StoredKeychainItem itemIn(const SqliteStatement::Row& row) {
    return {row.bytes(0),           row.bytes(1), row.bytes(2), row.bytes(3),
            row.bytesUnlessNull(4), row.bytes(5), row.bytes(6), row.integer(7)};
}

/// Short at first, as most locks are.
std::chrono::milliseconds pauseBefore(int attempt) {
    return std::chrono::milliseconds{std::min(1 << std::min(attempt, 5), 25)};
}

/// False when the deadline has passed.
bool waitForLock(KeychainDatabase::Deadline deadline, int attempt) {
    const auto now = std::chrono::steady_clock::now();
    if (now >= deadline) {
        return false;
    }
    std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(pauseBefore(attempt), deadline - now));
    return true;
}

int onBusy(void* deadline, int attempt) {
    return waitForLock(*static_cast<const KeychainDatabase::Deadline*>(deadline), attempt) ? 1 : 0;
}

}  // namespace

KeychainDatabase::KeychainDatabase(const std::string& path, Deadline deadline)
    : path_{path}, deadline_{deadline}, connection_{path, {}} {
    // One deadline for all the locks that an operation takes.
    sqlite3_busy_handler(connection_.handle(), &onBusy, &deadline_);
}

KeychainFileContent KeychainDatabase::begin() {
    const auto content = contentOfKeychainFile(connection_);
    if (content == KeychainFileContent::keychain || content == KeychainFileContent::empty) {
        connection_.run(settings);
    }
    return content;
}

bool KeychainDatabase::meansDamage(const SqliteError& error) noexcept {
    // Without a table or column of its layout, a keychain is damaged too.
    return error.primaryCode() == SQLITE_CORRUPT || error.primaryCode() == SQLITE_NOTADB ||
           error.primaryCode() == SQLITE_ERROR;
}

KeychainStatus KeychainDatabase::statusOf(const SqliteError& error) noexcept {
    switch (error.primaryCode()) {
        case SQLITE_CONSTRAINT:
            return KeychainStatus::duplicateItem;
        case SQLITE_PERM:
        case SQLITE_AUTH:
        case SQLITE_READONLY:
            return KeychainStatus::writePermission;
        case SQLITE_FULL:
            return KeychainStatus::diskFull;
        case SQLITE_ERROR:  // a file whose header or tables are not those of a keychain
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
            return KeychainStatus::invalidKeychain;
        case SQLITE_TOOBIG:
            return KeychainStatus::param;
        case SQLITE_IOERR:
            return statusOfSystemError(error.systemError(), KeychainStatus::io);
        case SQLITE_CANTOPEN:
            if (error.systemError() == ENOENT) {
                return KeychainStatus::itemNotFound;  // it has gone since it was found
            }
            return error.code() == SQLITE_CANTOPEN_SYMLINK
                       ? KeychainStatus::invalidKeychain
                       : statusOfSystemError(error.systemError(), KeychainStatus::notAvailable);
        default:  // busy, locked, out of memory
            return KeychainStatus::notAvailable;
    }
}

KeychainDatabase::Found KeychainDatabase::first(const KeychainQuery& query) {
    Found found{checkLayout(), {}};
    if (found.status != KeychainStatus::success) {
        return found;
    }
    found.status = KeychainStatus::itemNotFound;
    SqliteStatement{connection_, withMatching(selection(), " ORDER BY id LIMIT 1")}.query(
        [&](const SqliteStatement::Row& row) {
            found = {KeychainStatus::success, itemIn(row)};
            return false;
        },
        query.service, query.account);
    return found;
}

KeychainStatus KeychainDatabase::everything(std::vector<StoredKeychainItem>& items) {
    connection_.run("BEGIN");  // the layout and the items of one moment
    const auto status = checkLayout();
    if (status == KeychainStatus::success) {
        SqliteStatement{connection_, selection().append("TRUE ORDER BY id")}.query(
            [&](const SqliteStatement::Row& row) {
                items.push_back(itemIn(row));
                return true;
            });
    }
    return status;
}

KeychainStatus KeychainDatabase::update(const KeychainQuery& target, const KeychainChanges& changes) {
    auto status = beginWriting();
    if (status != KeychainStatus::success) {
        return status;
    }
    const std::int64_t isRewritten = changes.account || changes.data ? 1 : 0;
    status = change(withMatching("UPDATE item SET account = coalesce(?3, account), data = coalesce(?4, data),"
                                 " comment = coalesce(?5, comment),"
                                 " written = iif(?6, max(?7, written + 1), written)"
                                 " WHERE id = (SELECT id FROM item WHERE ",
                                 " ORDER BY id LIMIT 1)"),
                    target.service, target.account, changes.account, SqliteBlob{changes.data}, changes.comment,
                    isRewritten, timeOfWriting());
    connection_.run("COMMIT");
    return status;
}

KeychainStatus KeychainDatabase::add(const StoredKeychainItem& item) {
    // One transaction with the layout: a second process may be about to make it too.
    auto status = beginWriting();
    if (status == KeychainStatus::itemNotFound) {
        connection_.run(std::string{keychainTable}.append(restOfFirstLayout).c_str());
        connection_.run(stepToPresentLayout);
    } else if (status != KeychainStatus::success) {
        return status;
    }
    status = change(
        "INSERT INTO item (service, account, label, comment, data, reference, accessibility, written)"
        " VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8)",
        item.service, item.account, item.label, item.comment, SqliteBlob{item.data},
        SqliteBlob{item.persistentReference}, item.accessibility, item.written);
    // A damaged page takes what can't be found any more.
    if (status == KeychainStatus::success) {
        const auto kept = first({.service = item.service, .account = item.account});
        if (kept.status != KeychainStatus::success || kept.item.persistentReference != item.persistentReference) {
            throw SqliteError{SQLITE_CORRUPT, "what has been added is not there"};
        }
    }
    connection_.run("COMMIT");
    return status;
}

KeychainStatus KeychainDatabase::remove(const KeychainQuery& target) {
    auto status = beginWriting();
    if (status == KeychainStatus::success) {
        status = change(withMatching("DELETE FROM item WHERE ", ""), target.service, target.account);
        connection_.run("COMMIT");
    }
    return status;
}

KeychainStatus KeychainDatabase::removeMoved(const std::vector<StoredKeychainItem>& items) {
    if (const auto status = beginWriting(); status != KeychainStatus::success) {
        return status;
    }
    SqliteStatement remove{connection_,
                           "DELETE FROM item WHERE reference = ?1 AND account = ?2 AND comment = ?3 AND data IS ?4"};
    for (const auto& item : items) {
        remove.run(SqliteBlob{item.persistentReference}, item.account, item.comment, SqliteBlob{item.data});
    }
    connection_.run("UPDATE store SET items_have_moved = 1; COMMIT");
    return KeychainStatus::success;
}

bool KeychainDatabase::haveItemsMoved() {
    bool haveMoved = false;
    if (checkLayout() == KeychainStatus::success && layout_ == presentLayout) {
        SqliteStatement{connection_, "SELECT items_have_moved FROM store"}.query([&](const SqliteStatement::Row& row) {
            haveMoved = row.integer(0) != 0;
            return false;
        });
    }
    return haveMoved;
}

// By SQLite's own locks, as the others hold them; but not by a transaction, which a damaged file has none of.
KeychainStatus KeychainDatabase::takeForItself() {
    sqlite3_exec(connection_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);  // what the damage was found in
    sqlite3_file* file = nullptr;
    sqlite3_file_control(connection_.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    const auto* const methods = file->pMethods;
    for (int attempt = 0;; ++attempt) {
        int code = methods->xLock(file, SQLITE_LOCK_SHARED);
        for (const int lock : {SQLITE_LOCK_RESERVED, SQLITE_LOCK_EXCLUSIVE}) {
            code = code == SQLITE_OK ? methods->xLock(file, lock) : code;
        }
        if (code == SQLITE_OK) {
            break;
        }
        // Two that keep what they have and wait for each other would do so for ever.
        methods->xUnlock(file, SQLITE_LOCK_NONE);
        if (code != SQLITE_BUSY) {
            throw SqliteError{code, connection_.handle()};
        }
        if (!waitForLock(deadline_, attempt)) {
            return KeychainStatus::notAvailable;
        }
    }
    int hasMoved = 0;
    sqlite3_file_control(connection_.handle(), "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    return hasMoved == 0 ? KeychainStatus::success : KeychainStatus::itemNotFound;
}

KeychainStatus KeychainDatabase::checkLayout() {
    SqliteStatement{connection_, "PRAGMA user_version"}.query([&](const SqliteStatement::Row& row) {
        layout_ = row.integer(0);
        return false;
    });
    if (layout_ == 0) {
        return KeychainStatus::itemNotFound;
    }
    return layout_ == firstLayout || layout_ == presentLayout ? KeychainStatus::success : KeychainStatus::unknownFormat;
}

KeychainStatus KeychainDatabase::beginWriting() {
    connection_.run("BEGIN IMMEDIATE");
    const auto status = checkLayout();
    if (status == KeychainStatus::success && layout_ == firstLayout) {
        const auto time = fileTime();
        connection_.run(stepToPresentLayout);
        SqliteStatement{connection_, "UPDATE item SET written = ?1"}.run(time);
        layout_ = presentLayout;
    }
    return status;
}

std::string KeychainDatabase::selection() const {
    return "SELECT service, account, label, comment, data, reference, " +
           (layout_ == firstLayout ? "'always', " + std::to_string(fileTime())
                                   : std::string{"accessibility, written"}) +
           " FROM item WHERE ";
}

std::int64_t KeychainDatabase::fileTime() const {
    struct stat found {};
    if (::stat(path_.c_str(), &found) != 0) {
        return 0;
    }
    const auto time = modificationTime(found);
    return time.tv_sec * std::int64_t{1'000'000} + time.tv_nsec / 1'000;
}

template <class... Parameters>
KeychainStatus KeychainDatabase::change(const std::string& sql, const Parameters&... parameters) {
    SqliteStatement{connection_, sql}.run(parameters...);
    return sqlite3_changes(connection_.handle()) == 0 ? KeychainStatus::itemNotFound : KeychainStatus::success;
}

}  // namespace Tarnwick_API::Platform
