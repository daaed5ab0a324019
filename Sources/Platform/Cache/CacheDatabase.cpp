#include <Platform/Cache/CacheDatabase.hpp>

#include <Platform/Cache/CacheFileHeader.hpp>
#include <Platform/Sqlite/SqliteStatement.hpp>

#include <chrono>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

// A use changes `entry` and its index only, and eviction reads nothing but the index: bodies lie apart. The triggers
// keep the total right in the transaction of whatever changes it.
constexpr const char* layout =
    "CREATE TABLE entry (id INTEGER PRIMARY KEY, key TEXT NOT NULL UNIQUE, used INTEGER NOT NULL,"
    " size INTEGER NOT NULL CHECK (size > 0)) STRICT;"
    "CREATE INDEX entry_by_use ON entry (used, size);"
    "CREATE TABLE content (id INTEGER PRIMARY KEY, head BLOB NOT NULL, body BLOB NOT NULL,"
    " check_value INTEGER NOT NULL) STRICT;"
    "CREATE TABLE total (id INTEGER PRIMARY KEY CHECK (id = 1), size INTEGER NOT NULL) STRICT;"
    "INSERT INTO total VALUES (1, 0);"
    "CREATE TRIGGER entry_added AFTER INSERT ON entry BEGIN UPDATE total SET size = size + NEW.size; END;"
    "CREATE TRIGGER entry_removed AFTER DELETE ON entry BEGIN UPDATE total SET size = size - OLD.size;"
    " DELETE FROM content WHERE id = OLD.id; END";

int waitForLock(void* patience, int wait) {
    return static_cast<LockPatience*>(patience)->waitOnce(wait) ? 1 : 0;
}

}  // namespace

struct CacheDatabase::Statements {
    explicit Statements(const SqliteConnection& connection)
        : find{connection,
               "SELECT head, body, size, check_value FROM entry JOIN content ON content.id = entry.id WHERE key = ?1"},
          add{connection,
              "INSERT INTO entry (key, used, size) VALUES (?1, (SELECT coalesce(max(used), 0) + 1 FROM entry), ?2)"},
          addContent{connection,
                     "INSERT OR REPLACE INTO content (id, head, body, check_value) VALUES (?1, ?2, ?3, ?4)"},
          touch{connection, "UPDATE entry SET used = (SELECT max(used) + 1 FROM entry) WHERE key = ?1"},
          remove{connection, "DELETE FROM entry WHERE key = ?1"},
          removeIfStill{connection,
                        "DELETE FROM entry WHERE key = ?1 AND EXISTS"
                        " (SELECT 1 FROM content WHERE content.id = entry.id AND head = ?2 AND body = ?3)"},
          total{connection, "SELECT size FROM total"},
          byUse{connection, "SELECT used, size FROM entry ORDER BY used"},
          evict{connection, "DELETE FROM entry WHERE used <= ?1"},
          recount{connection, "INSERT OR REPLACE INTO total VALUES (1, (SELECT coalesce(sum(size), 0) FROM entry))"} {}

    SqliteStatement find, add, addContent, touch, remove, removeIfStill, total, byUse, evict, recount;
};

bool CacheDatabase::isFinal(const SqliteError& error) noexcept {
    switch (error.primaryCode()) {
        case SQLITE_ERROR:  // tables that are not those of a cache
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
        case SQLITE_CANTOPEN:
            return true;
        default:  // busy, full, read-only, out of memory, ...
            return false;
    }
}

bool CacheDatabase::isLock(const SqliteError& error) noexcept {
    return error.primaryCode() == SQLITE_BUSY;
}

CacheDatabase::CacheDatabase(const std::string& path, LockPatience& patience)
    : connection_{path, std::chrono::milliseconds{0}} {
    sqlite3_busy_handler(connection_.handle(), &waitForLock, &patience);
    checkCacheFileHeader(connection_.handle());
    try {
        connection_.run(
            "PRAGMA synchronous = NORMAL; PRAGMA temp_store = MEMORY; PRAGMA cell_size_check = ON;"
            "PRAGMA journal_size_limit = 4194304");
        layOut();
        statements_ = std::make_unique<Statements>(connection_);
    } catch (const SqliteError& error) {
        if (isFinal(error)) {
            leaveFileAsItIs();
        }
        throw;
    }
}

CacheDatabase::~CacheDatabase() = default;

bool CacheDatabase::isInPlace() const {
    int hasMoved = 0;
    sqlite3_file_control(connection_.handle(), "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    return hasMoved == 0;
}

void CacheDatabase::leaveFileAsItIs() {
    sqlite3_db_config(connection_.handle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
}

std::optional<EncodedResponse> CacheDatabase::find(const std::string& key) {
    std::optional<EncodedResponse> found;
    statements_->find.query(
        [&](const SqliteStatement::Row& row) {
            found = EncodedResponse{row.bytes(0), std::make_shared<const Bytes>(row.bytes(1)), row.integer(2),
                                    row.integer(3)};
            return false;
        },
        key);
    return found;
}

std::size_t CacheDatabase::usage() {
    std::int64_t size = 0;
    statements_->total.query([&](const SqliteStatement::Row& row) {
        size = row.integer(0);
        return false;
    });
    return size < 0 ? 0 : static_cast<std::size_t>(size);
}

// The layout is made before the log is turned on, so that the header of a file that is not empty always tells.
void CacheDatabase::layOut() {
    if (number("PRAGMA user_version") == 0) {
        makeLayout();
    }
    try {
        connection_.run("PRAGMA journal_mode = WAL");
    } catch (const SqliteError& error) {
        if (!isLock(error)) {  // when busy, a later process turns the log on
            throw;
        }
    }
}

// One transaction from the file's first byte on: neither another process nor the next one after this was killed finds a
// file half made.
void CacheDatabase::makeLayout() {
    Transaction transaction{*this, "BEGIN"};
    // How the file begins has to be said first; BEGIN IMMEDIATE would begin it otherwise. Both write, and so take the
    // lock under which the file is looked at.
    connection_.run("PRAGMA auto_vacuum = INCREMENTAL");
    set("application_id", cacheApplicationId);
    if (number("PRAGMA user_version") != 0) {
        return;  // another process has come first
    }
    if (number("SELECT count(*) FROM sqlite_schema") != 0) {
        throw SqliteError{SQLITE_NOTADB, "the file is no cache"};
    }
    connection_.run(layout);
    set("user_version", cacheLayoutVersion);
    transaction.commit();
}

std::int64_t CacheDatabase::number(std::string_view sql) {
    std::int64_t value = 0;
    SqliteStatement{connection_, sql}.query([&](const SqliteStatement::Row& row) {
        value = row.integer(0);
        return false;
    });
    return value;
}

void CacheDatabase::set(const char* pragma, std::uint32_t value) {
    connection_.run(std::string{"PRAGMA "}.append(pragma).append(" = ").append(std::to_string(value)).c_str());
}

CacheDatabase::Transaction::Transaction(CacheDatabase& database) : Transaction{database, "BEGIN IMMEDIATE"} {
}

CacheDatabase::Transaction::Transaction(CacheDatabase& database, const char* begin) : database_{database} {
    database_.connection_.run(begin);
}

CacheDatabase::Transaction::~Transaction() {
    if (isOpen_) {
        // Some errors have rolled it back already; then this one fails, which is as well.
        sqlite3_exec(database_.connection_.handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

void CacheDatabase::Transaction::store(const std::string& key, const EncodedResponse& response) {
    remove(key);
    database_.statements_->add.run(key, response.size);
    const std::int64_t id = sqlite3_last_insert_rowid(database_.connection_.handle());
    database_.statements_->addContent.run(id, SqliteBlob{response.head}, SqliteBlob{*response.body},
                                          response.checkValue);
}

void CacheDatabase::Transaction::touch(const std::string& key) {
    database_.statements_->touch.run(key);
}

void CacheDatabase::Transaction::remove(const std::string& key) {
    database_.statements_->remove.run(key);
}

void CacheDatabase::Transaction::removeIfStill(const std::string& key, const EncodedResponse& response) {
    database_.statements_->removeIfStill.run(key, SqliteBlob{response.head}, SqliteBlob{*response.body});
}

void CacheDatabase::Transaction::removeAll() {
    database_.connection_.run("DELETE FROM entry; DELETE FROM content; UPDATE total SET size = 0");
}

void CacheDatabase::Transaction::evict(std::size_t capacity) {
    if (!database_.hasCounted_) {
        // Once, as it reads all of the index: damage to the total would let the file grow, or empty it.
        database_.statements_->recount.run();
        database_.hasCounted_ = true;
    }
    const auto usage = database_.usage();
    if (usage <= capacity) {
        return;
    }
    const auto excess = usage - capacity;
    std::size_t freed = 0;
    std::int64_t lastUse = 0;
    database_.statements_->byUse.query([&](const SqliteStatement::Row& row) {
        lastUse = row.integer(0);
        freed += static_cast<std::size_t>(row.integer(1));
        return freed < excess;
    });
    database_.statements_->evict.run(lastUse);
}

void CacheDatabase::Transaction::shrinkFile() {
    database_.connection_.run("PRAGMA incremental_vacuum");
}

void CacheDatabase::Transaction::commit() {
    database_.connection_.run("COMMIT");
    isOpen_ = false;
}

}  // namespace Tarnwick_API::Platform
