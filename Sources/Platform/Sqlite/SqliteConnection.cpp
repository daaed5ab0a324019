#include <Platform/Sqlite/SqliteConnection.hpp>

#include <Platform/Sqlite/SqliteError.hpp>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

SqliteConnection::SqliteConnection(const std::string& path, std::chrono::milliseconds timeout) {
    sqlite3* connection = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &connection,
                                     SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_NOMUTEX |
                                         SQLITE_OPEN_PRIVATECACHE | SQLITE_OPEN_EXRESCODE,
                                     nullptr);
    handle_.reset(connection);
    if (code != SQLITE_OK) {
        throw SqliteError{code, connection};
    }
    sqlite3_busy_timeout(connection, static_cast<int>(timeout.count()));
}

void SqliteConnection::run(const char* sql) {
    if (const int code = sqlite3_exec(handle(), sql, nullptr, nullptr, nullptr); code != SQLITE_OK) {
        throw SqliteError{code, handle()};
    }
}

void SqliteConnection::Close::operator()(sqlite3* connection) const noexcept {
    sqlite3_close(connection);
}

}  // namespace Tarnwick_API::Platform
