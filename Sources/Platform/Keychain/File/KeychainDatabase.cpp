#include <Platform/Keychain/File/KeychainDatabase.hpp>
#include <Platform/Keychain/File/KeychainFile.hpp>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr int layoutVersion = 1;

// secure_delete: what was a secret is overwritten with zeros. temp_store: nothing of an item goes to another folder.
constexpr std::string_view settings =
    "PRAGMA secure_delete = ON; PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON; PRAGMA synchronous = EXTRA";

constexpr std::string_view createLayout =
    "CREATE TABLE item (id INTEGER PRIMARY KEY, service TEXT NOT NULL, account TEXT NOT NULL, label TEXT NOT NULL,"
    " comment TEXT NOT NULL, data BLOB, reference BLOB NOT NULL UNIQUE, UNIQUE (account, service)) STRICT;"
    "PRAGMA user_version = 1";

constexpr std::string_view selectItems = "SELECT service, account, label, comment, data, reference FROM item WHERE ";

constexpr std::string_view matching = "(?1 IS NULL OR service = ?1) AND (?2 IS NULL OR account = ?2)";

std::string withMatching(std::string_view before, std::string_view after) {
    return std::string{before}.append(matching).append(after);
}

template <class Value>
const Value* pointerTo(const std::optional<Value>& value) {
    return value ? &*value : nullptr;
}

template <class Value>
const Value* pointerTo(std::optional<Value>&& value) = delete;

}  // namespace

/// A prepared statement. An error in preparing or binding comes out of the next `step`.
class KeychainDatabase::Statement {
public:
    Statement(sqlite3* connection, std::string_view sql) {
        sqlite3_stmt* prepared = nullptr;
        code_ = sqlite3_prepare_v2(connection, sql.data(), static_cast<int>(sql.size()), &prepared, nullptr);
        handle_.reset(prepared);
    }

    // Values are bound where they lie, and outlive the statement. Null leaves the parameter NULL.
    void bindText(int index, const std::string* text) {
        if (text != nullptr && code_ == SQLITE_OK) {
            code_ = sqlite3_bind_text64(handle_.get(), index, text->data(), text->size(), SQLITE_STATIC, SQLITE_UTF8);
        }
    }

    void bindBytes(int index, const Bytes* bytes) {
        if (bytes != nullptr && code_ == SQLITE_OK) {
            code_ = sqlite3_bind_blob64(handle_.get(), index, bytes->data(), bytes->size(), SQLITE_STATIC);
        }
    }

    int step() { return code_ == SQLITE_OK ? sqlite3_step(handle_.get()) : code_; }

    int integer(int column) const { return sqlite3_column_int(handle_.get(), column); }

    std::optional<std::string> bytes(int column) const {
        if (sqlite3_column_type(handle_.get(), column) == SQLITE_NULL) {
            return std::nullopt;
        }
        const auto* const data = static_cast<const char*>(sqlite3_column_blob(handle_.get(), column));
        const auto size = static_cast<std::size_t>(sqlite3_column_bytes(handle_.get(), column));
        return data == nullptr ? std::string{} : std::string{data, size};
    }

    std::string text(int column) const { return bytes(column).value_or(std::string{}); }

    /// The row of `selectItems`.
    StoredKeychainItem item() const { return {text(0), text(1), text(2), text(3), bytes(4), text(5)}; }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
    };

    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
    int code_ = SQLITE_OK;
};

void KeychainDatabase::Close::operator()(sqlite3* connection) const noexcept {
    sqlite3_close(connection);
}

KeychainDatabase::KeychainDatabase(const std::string& path, std::chrono::milliseconds timeout) {
    sqlite3* connection = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &connection,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX |
                                         SQLITE_OPEN_PRIVATECACHE | SQLITE_OPEN_EXRESCODE,
                                     nullptr);
    connection_.reset(connection);
    if (code != SQLITE_OK) {
        opened_ = statusOf(code);
        return;
    }
    sqlite3_busy_timeout(connection, static_cast<int>(timeout.count()));
    opened_ = run(settings);
}

KeychainDatabase::Found KeychainDatabase::first(const KeychainQuery& query) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return {status, {}};
    }
    Statement select{connection_.get(), withMatching(selectItems, " ORDER BY id LIMIT 1")};
    select.bindText(1, pointerTo(query.service));
    select.bindText(2, pointerTo(query.account));
    const int code = select.step();
    if (code != SQLITE_ROW) {
        return {code == SQLITE_DONE ? KeychainStatus::itemNotFound : statusOf(code), {}};
    }
    return {KeychainStatus::success, select.item()};
}

KeychainStatus KeychainDatabase::everything(std::vector<StoredKeychainItem>& items) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return status;
    }
    Statement select{connection_.get(), std::string{selectItems}.append("TRUE ORDER BY id")};
    int code = select.step();
    for (; code == SQLITE_ROW; code = select.step()) {
        items.push_back(select.item());
    }
    return statusOf(code);
}

KeychainStatus KeychainDatabase::update(const KeychainQuery& target, const KeychainChanges& changes) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return status;
    }
    Statement update{connection_.get(),
                     withMatching("UPDATE item SET account = coalesce(?3, account), data = coalesce(?4, data),"
                                  " comment = coalesce(?5, comment) WHERE id = (SELECT id FROM item WHERE ",
                                  " ORDER BY id LIMIT 1)")};
    update.bindText(1, pointerTo(target.service));
    update.bindText(2, pointerTo(target.account));
    update.bindText(3, pointerTo(changes.account));
    update.bindBytes(4, pointerTo(changes.data));
    update.bindText(5, pointerTo(changes.comment));
    return change(update);
}

KeychainStatus KeychainDatabase::add(const StoredKeychainItem& item) {
    if (opened_ != KeychainStatus::success) {
        return opened_;
    }
    // One transaction with the layout: a second process may be about to make it too. What fails goes with the
    // connection.
    if (const auto status = run("BEGIN IMMEDIATE"); status != KeychainStatus::success) {
        return status;
    }
    auto status = checkLayout();
    if (status == KeychainStatus::itemNotFound) {
        status = run(createLayout);
    }
    if (status != KeychainStatus::success) {
        return status;
    }
    Statement insert{connection_.get(),
                     "INSERT INTO item (service, account, label, comment, data, reference)"
                     " VALUES (?1, ?2, ?3, ?4, ?5, ?6)"};
    insert.bindText(1, &item.service);
    insert.bindText(2, &item.account);
    insert.bindText(3, &item.label);
    insert.bindText(4, &item.comment);
    insert.bindBytes(5, pointerTo(item.data));
    insert.bindBytes(6, &item.persistentReference);
    status = change(insert);
    return status == KeychainStatus::success ? run("COMMIT") : status;
}

KeychainStatus KeychainDatabase::remove(const KeychainQuery& target) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return status;
    }
    Statement statement{connection_.get(), withMatching("DELETE FROM item WHERE ", "")};
    statement.bindText(1, pointerTo(target.service));
    statement.bindText(2, pointerTo(target.account));
    return change(statement);
}

KeychainStatus KeychainDatabase::removeUnchanged(const std::vector<StoredKeychainItem>& items) {
    if (const auto status = checkLayout(); status != KeychainStatus::success) {
        return status;
    }
    if (const auto status = run("BEGIN IMMEDIATE"); status != KeychainStatus::success) {
        return status;
    }
    for (const auto& item : items) {
        Statement statement{connection_.get(),
                            "DELETE FROM item WHERE reference = ?1 AND account = ?2 AND comment = ?3 AND data IS ?4"};
        statement.bindBytes(1, &item.persistentReference);
        statement.bindText(2, &item.account);
        statement.bindText(3, &item.comment);
        statement.bindBytes(4, pointerTo(item.data));
        if (const int code = statement.step(); code != SQLITE_DONE) {
            return statusOf(code);
        }
    }
    return run("COMMIT");
}

KeychainStatus KeychainDatabase::statusOf(int code) const {
    switch (code & 0xFF) {
        case SQLITE_OK:
        case SQLITE_ROW:
        case SQLITE_DONE:
            return KeychainStatus::success;
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
            return statusOfSystemError(lastFileError(), KeychainStatus::io);
        case SQLITE_CANTOPEN:
            return code == SQLITE_CANTOPEN_SYMLINK
                       ? KeychainStatus::invalidKeychain
                       : statusOfSystemError(sqlite3_system_errno(connection_.get()), KeychainStatus::notAvailable);
        default:  // busy, locked, out of memory
            return KeychainStatus::notAvailable;
    }
}

int KeychainDatabase::lastFileError() const {
    int number = 0;  // the connection's own error number is by now that of a rollback
    sqlite3_file_control(connection_.get(), "main", SQLITE_FCNTL_LAST_ERRNO, &number);
    return number;
}

KeychainStatus KeychainDatabase::run(std::string_view sql) {
    return statusOf(sqlite3_exec(connection_.get(), std::string{sql}.c_str(), nullptr, nullptr, nullptr));
}

KeychainStatus KeychainDatabase::checkLayout() {
    if (opened_ != KeychainStatus::success) {
        return opened_;
    }
    Statement version{connection_.get(), "PRAGMA user_version"};
    const int code = version.step();
    if (code != SQLITE_ROW) {
        return code == SQLITE_DONE ? KeychainStatus::invalidKeychain : statusOf(code);
    }
    switch (version.integer(0)) {
        case 0:
            return KeychainStatus::itemNotFound;
        case layoutVersion:
            return KeychainStatus::success;
        default:
            return KeychainStatus::unknownFormat;
    }
}

KeychainStatus KeychainDatabase::change(Statement& statement) {
    const int code = statement.step();
    if (code != SQLITE_DONE) {
        return statusOf(code);
    }
    return sqlite3_changes(connection_.get()) == 0 ? KeychainStatus::itemNotFound : KeychainStatus::success;
}

}  // namespace Tarnwick_API::Platform
