#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <Platform/Sqlite/SqliteConnection.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

struct sqlite3_stmt;

namespace Tarnwick_API::Platform {

/// A parameter of bytes, where a string would be text.
class SqliteBlob {
public:
    explicit SqliteBlob(const Bytes& bytes) noexcept : bytes_{&bytes} {}
    /// None is NULL.
    explicit SqliteBlob(const std::optional<Bytes>& bytes) noexcept : bytes_{bytes ? &*bytes : nullptr} {}

    [[nodiscard]] const Bytes* bytes() const noexcept { return bytes_; }

private:
    const Bytes* bytes_;
};

/// A prepared statement, for use again and again. Everything throws SqliteError. Its connection outlives it.
class SqliteStatement {
public:
    SqliteStatement(const SqliteConnection& connection, std::string_view sql);

    /// The columns of one row; valid until the next step.
    class Row {
    public:
        explicit Row(sqlite3_stmt* statement) noexcept : statement_{statement} {}
        [[nodiscard]] std::int64_t integer(int column) const noexcept;
        /// Bytes or text; NULL is empty.
        [[nodiscard]] Bytes bytes(int column) const;
        [[nodiscard]] std::optional<Bytes> bytesUnlessNull(int column) const;

    private:
        sqlite3_stmt* statement_;
    };

    /// Runs it with these parameters to its end: integers, text (none is NULL) and blobs. None is copied.
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
        explicit Reset(sqlite3_stmt* statement) noexcept : statement_{statement} {}
        Reset(const Reset&) = delete;
        Reset& operator=(const Reset&) = delete;
        ~Reset();

    private:
        sqlite3_stmt* statement_;
    };

    void bind(int index, std::int64_t value);
    void bind(int index, const std::string& text);
    void bind(int index, const std::optional<std::string>& text);
    void bind(int index, const SqliteBlob& blob);
    bool step();
    void check(int code) const;

    std::unique_ptr<sqlite3_stmt, Finalize> handle_;
};

}  // namespace Tarnwick_API::Platform
