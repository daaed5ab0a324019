#include <Platform/Sqlite/SqliteError.hpp>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

int systemErrorOf(int primaryCode, sqlite3* connection) {
    int number = 0;
    if (primaryCode == SQLITE_CANTOPEN) {
        number = sqlite3_system_errno(connection);
    } else if (primaryCode == SQLITE_IOERR) {
        // The connection's own number is by now that of a rollback.
        sqlite3_file_control(connection, "main", SQLITE_FCNTL_LAST_ERRNO, &number);
    }
    return number;
}

}  // namespace

SqliteError::SqliteError(int code, sqlite3* connection)
    : std::runtime_error{sqlite3_errstr(code)}, code_{code}, systemError_{systemErrorOf(primaryCode(), connection)} {
}

}  // namespace Tarnwick_API::Platform
