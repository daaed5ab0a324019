#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace Tarnwick_API::Platform {

/// Stays inside the room.
class CacheDatabaseError : public std::runtime_error {
public:
    /// `isFinal`: no later try will do better with this file.
    CacheDatabaseError(const std::string& reason, bool isFinal) : std::runtime_error{reason}, isFinal_{isFinal} {}
    /// For a result code of SQLite.
    explicit CacheDatabaseError(int code);

    [[nodiscard]] bool isFinal() const noexcept { return isFinal_; }

private:
    bool isFinal_;
};

/// A prepared statement, for use again and again.
class CacheStatement {
public:
    CacheStatement(sqlite3* connection, std::string_view sql);

    struct Blob {
        const Bytes& bytes;
    };

    /// The columns of one row; valid until the next step.
    class Row {
    public:
        explicit Row(sqlite3_stmt* statement) : statement_{statement} {}
        [[nodiscard]] std::int64_t integer(int column) const;
        [[nodiscard]] Bytes bytes(int column) const;

    private:
        sqlite3_stmt* statement_;
    };

    /// Runs it with these parameters to its end.
    template <class... Parameters>
    void run(const Parameters&... parameters) {
        query([](const Row& /*row*/) { return true; }, parameters...);
    }

    /// Calls `take` with each row until it gives false.
    template <class Take, class... Parameters>
    void query(Take take, const Parameters&... parameters) {
        const Reset reset{handle_.get()};
        int index = 0;
        (bind(++index, parameters), ...);
        while (step() && take(Row{handle_.get()})) {
        }
    }

private:
    struct Finalize {
        void operator()(sqlite3_stmt* statement) const noexcept;
    };
    /// A statement that is not reset keeps its locks, and its parameters die with the call.
    class Reset {
    public:
        explicit Reset(sqlite3_stmt* statement) : statement_{statement} {}
        Reset(const Reset&) = delete;
        Reset& operator=(const Reset&) = delete;
        ~Reset();

    private:
        sqlite3_stmt* statement_;
    };

    void bind(int index, std::int64_t value);
    void bind(int index, const std::string& text);
    void bind(int index, const Blob& blob);
    bool step();

    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

}  // namespace Tarnwick_API::Platform
