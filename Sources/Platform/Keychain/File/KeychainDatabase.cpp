#include <Platform/Keychain/File/KeychainDatabase.hpp>

#include <Platform/Keychain/File/KeychainFile.hpp>
#include <Platform/Sqlite/SqliteStatement.hpp>

#include <string>
#include <string_view>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr int layoutVersion = 1;

// secure_delete: what was a secret is overwritten with zeros. temp_store: nothing of an item goes to another folder.
constexpr const char* settings =
    "PRAGMA secure_delete = ON; PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON; PRAGMA synchronous = EXTRA";

constexpr const char* createLayout =
    "CREATE TABLE item (id INTEGER PRIMARY KEY, service TEXT NOT NULL, account TEXT NOT NULL, label TEXT NOT NULL,"
    " comment TEXT NOT NULL, data BLOB, reference BLOB NOT NULL UNIQUE, UNIQUE (account, service)) STRICT;"
    "PRAGMA user_version = 1";

constexpr std::string_view selectItems = "SELECT service, account, label, comment, data, reference FROM item WHERE ";

constexpr std::string_view matching = "(?1 IS NULL OR service = ?1) AND (?2 IS NULL OR account = ?2)";

std::string withMatching(std::string_view before, std::string_view after) {
    return std::string{before}.append(matching).append(after);
}

/// The item in a row of `selectItems`.
StoredKeychainItem itemIn(const SqliteStatement::Row& row) {
    return {row.bytes(0), row.bytes(1), row.bytes(2), row.bytes(3), row.bytesUnlessNull(4), row.bytes(5)};
}

}  // namespace

KeychainDatabase::KeychainDatabase(const std::string& path, std::chrono::milliseconds timeout)
    : connection_{path, timeout} {
    connection_.run(settings);
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
    SqliteStatement{connection_, withMatching(selectItems, " ORDER BY id LIMIT 1")}.query(
        [&](const SqliteStatement::Row& row) {
            found = {KeychainStatus::success, itemIn(row)};
            return false;
        },
        query.service, query.account);
    return found;
}

KeychainStatus KeychainDatabase::everything(std::vector<StoredKeychainItem>& items) {
    const auto status = checkLayout();
    if (status == KeychainStatus::success) {
        SqliteStatement{connection_, std::string{selectItems}.append("TRUE ORDER BY id")}.query(
            [&](const SqliteStatement::Row& row) {
                items.push_back(itemIn(row));
                return true;
            });
    }
    return status;
}

KeychainStatus KeychainDatabase::update(const KeychainQuery& target, const KeychainChanges& changes) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return status;
    }
    return change(withMatching("UPDATE item SET account = coalesce(?3, account), data = coalesce(?4, data),"
                               " comment = coalesce(?5, comment) WHERE id = (SELECT id FROM item WHERE ",
                               " ORDER BY id LIMIT 1)"),
                  target.service, target.account, changes.account, SqliteBlob{changes.data}, changes.comment);
}

KeychainStatus KeychainDatabase::add(const StoredKeychainItem& item) {
    // One transaction with the layout: a second process may be about to make it too.
    connection_.run("BEGIN IMMEDIATE");
    auto status = checkLayout();
    if (status == KeychainStatus::itemNotFound) {
        connection_.run(createLayout);
    } else if (status != KeychainStatus::success) {
        return status;
    }
    status =
        change("INSERT INTO item (service, account, label, comment, data, reference) VALUES (?1, ?2, ?3, ?4, ?5, ?6)",
               item.service, item.account, item.label, item.comment, SqliteBlob{item.data},
               SqliteBlob{item.persistentReference});
    connection_.run("COMMIT");
    return status;
}

KeychainStatus KeychainDatabase::remove(const KeychainQuery& target) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return status;
    }
    return change(withMatching("DELETE FROM item WHERE ", ""), target.service, target.account);
}

KeychainStatus KeychainDatabase::removeUnchanged(const std::vector<StoredKeychainItem>& items) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return status;
    }
    connection_.run("BEGIN IMMEDIATE");
    SqliteStatement remove{connection_,
                           "DELETE FROM item WHERE reference = ?1 AND account = ?2 AND comment = ?3 AND data IS ?4"};
    for (const auto& item : items) {
        remove.run(SqliteBlob{item.persistentReference}, item.account, item.comment, SqliteBlob{item.data});
    }
    connection_.run("COMMIT");
    return KeychainStatus::success;
}

KeychainStatus KeychainDatabase::checkLayout() {
    auto status = KeychainStatus::invalidKeychain;
    SqliteStatement{connection_, "PRAGMA user_version"}.query([&](const SqliteStatement::Row& row) {
        switch (row.integer(0)) {
            case 0:
                status = KeychainStatus::itemNotFound;
                break;
            case layoutVersion:
                status = KeychainStatus::success;
                break;
            default:
                status = KeychainStatus::unknownFormat;
        }
        return false;
    });
    return status;
}

template <class... Parameters>
KeychainStatus KeychainDatabase::change(const std::string& sql, const Parameters&... parameters) {
    SqliteStatement{connection_, sql}.run(parameters...);
    return sqlite3_changes(connection_.handle()) == 0 ? KeychainStatus::itemNotFound : KeychainStatus::success;
}

}  // namespace Tarnwick_API::Platform
