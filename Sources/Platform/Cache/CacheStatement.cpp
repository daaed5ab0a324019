#include <Platform/Cache/CacheStatement.hpp>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

bool isFinalCode(int code) {
    switch (code & 0xFF) {
        case SQLITE_ERROR:  // tables that are not those of a cache
        case SQLITE_CORRUPT:
        case SQLITE_NOTADB:
        case SQLITE_CANTOPEN:
            return true;
        default:  // busy, full, read-only, out of memory, ...
            return false;
    }
}

void check(int code) {
    if (code != SQLITE_OK) {
        throw CacheDatabaseError{code};
    }
}

}  // namespace

CacheDatabaseError::CacheDatabaseError(int code) : CacheDatabaseError{sqlite3_errstr(code), isFinalCode(code)} {
}

CacheStatement::CacheStatement(sqlite3* connection, std::string_view sql) {
    sqlite3_stmt* prepared = nullptr;
    const int code = sqlite3_prepare_v3(connection, sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                                        &prepared, nullptr);
    handle_.reset(prepared);
    check(code);
}

std::int64_t CacheStatement::Row::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

Bytes CacheStatement::Row::bytes(int column) const {
    const auto* const data = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return data == nullptr ? Bytes{} : Bytes{data, size};
}

void CacheStatement::Finalize::operator()(sqlite3_stmt* statement) const noexcept {
    sqlite3_finalize(statement);
}

CacheStatement::Reset::~Reset() {
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

void CacheStatement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(handle_.get(), index, value));
}

void CacheStatement::bind(int index, const std::string& text) {
    check(sqlite3_bind_text64(handle_.get(), index, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void CacheStatement::bind(int index, const Blob& blob) {
    check(sqlite3_bind_blob64(handle_.get(), index, blob.bytes.data(), blob.bytes.size(), SQLITE_STATIC));
}

bool CacheStatement::step() {
    const int code = sqlite3_step(handle_.get());
    if (code == SQLITE_DONE) {
        return false;
    }
    if (code != SQLITE_ROW) {
        throw CacheDatabaseError{code};
    }
    return true;
}

}  // namespace Tarnwick_API::Platform
