#include <Platform/Sqlite/SqliteStatement.hpp>

#include <Platform/Sqlite/SqliteError.hpp>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

SqliteStatement::SqliteStatement(const SqliteConnection& connection, std::string_view sql) {
    sqlite3_stmt* prepared = nullptr;
    const int code = sqlite3_prepare_v3(connection.handle(), sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    handle_.reset(prepared);
    if (code != SQLITE_OK) {
        throw SqliteError{code, connection.handle()};
    }
}

std::int64_t SqliteStatement::Row::integer(int column) const noexcept {
    return sqlite3_column_int64(statement_, column);
}

Bytes SqliteStatement::Row::bytes(int column) const {
    const auto* const data = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return data == nullptr ? Bytes{} : Bytes{data, size};
}

std::optional<Bytes> SqliteStatement::Row::bytesUnlessNull(int column) const {
    return sqlite3_column_type(statement_, column) == SQLITE_NULL ? std::nullopt : std::optional{bytes(column)};
}

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
    sqlite3_finalize(statement);
}

SqliteStatement::Reset::~Reset() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

void SqliteStatement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(handle_.get(), index, value));
}

void SqliteStatement::bind(int index, const std::string& text) {
    check(sqlite3_bind_text64(handle_.get(), index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void SqliteStatement::bind(int index, const std::optional<std::string>& text) {
    if (text) {
        bind(index, *text);
    }
}

void SqliteStatement::bind(int index, const SqliteBlob& blob) {
    if (const auto* const bytes = blob.bytes()) {
        check(sqlite3_bind_blob64(handle_.get(), index, bytes->data(), bytes->size(), SQLITE_STATIC));
    }
}

bool SqliteStatement::step() {
    const int code = sqlite3_step(handle_.get());
    if (code != SQLITE_ROW && code != SQLITE_DONE) {
        check(code);
    }
    return code == SQLITE_ROW;
}

void SqliteStatement::check(int code) const {
    if (code != SQLITE_OK) {
        throw SqliteError{code, sqlite3_db_handle(handle_.get())};
    }
}

}  // namespace Tarnwick_API::Platform
