#pragma once

#include <stdexcept>
#include <string>

struct sqlite3;

namespace Tarnwick_API::Platform {

/// Why a step with a database fails. What becomes of that is for the owner of the database to judge; it passes this on
/// to nobody.
class SqliteError : public std::runtime_error {
public:
    /// Of a call that has just failed with the result code `code`.
    SqliteError(int code, sqlite3* connection);
    /// Of what has been found otherwise.
    SqliteError(int code, const std::string& reason) : std::runtime_error{reason}, code_{code} {}

    /// SQLite's result code, with all that it tells.
    [[nodiscard]] int code() const noexcept { return code_; }
    /// The kind alone.
    [[nodiscard]] int primaryCode() const noexcept { return code_ & 0xFF; }
    /// Of a file that can't be opened, read or written: the system's error number; otherwise zero.
    [[nodiscard]] int systemError() const noexcept { return systemError_; }

private:
    int code_;
    int systemError_ = 0;
};

}  // namespace Tarnwick_API::Platform
