#pragma once

#include <chrono>
#include <memory>
#include <string>

struct sqlite3;

namespace Tarnwick_API::Platform {

/// A connection of our own to an existing database file; a link at its place is refused. Everything throws SqliteError.
/// One thread at a time.
class SqliteConnection {
public:
    /// Each lock of other connections is waited for as long as `timeout`.
    SqliteConnection(const std::string& path, std::chrono::milliseconds timeout);

    /// Runs statements whose rows nobody wants, one after the other.
    void run(const char* sql);

    [[nodiscard]] sqlite3* handle() const noexcept { return handle_.get(); }

private:
    struct Close {
        void operator()(sqlite3* connection) const noexcept;
    };

    std::unique_ptr<sqlite3, Close> handle_;
};

}  // namespace Tarnwick_API::Platform
