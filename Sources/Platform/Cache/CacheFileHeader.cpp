#include <Platform/Cache/CacheFileHeader.hpp>

#include <Platform/Sqlite/SqliteError.hpp>

#include <array>
#include <cstddef>
#include <string_view>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

/// The file's header, and the start of the first table, which lies on the same page.
class FirstBytes {
public:
    // Read through SQLite's own handle: a descriptor of ours would, when closed, take the locks of every connection of
    // this process to the file with it.
    explicit FirstBytes(sqlite3* connection) {
        sqlite3_file* file = nullptr;
        sqlite3_file_control(connection, "main", SQLITE_FCNTL_FILE_POINTER, &file);
        int code = file->pMethods->xFileSize(file, &fileSize_);
        if (code == SQLITE_OK && fileSize_ > 0) {
            code = file->pMethods->xRead(file, bytes_.data(), static_cast<int>(bytes_.size()), 0);
        }
        if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) {
            throw SqliteError{code, connection};
        }
    }

    [[nodiscard]] bool areNone() const { return fileSize_ == 0; }
    [[nodiscard]] bool areOfDatabase() const {
        constexpr std::string_view magic{"SQLite format 3\0", 16};
        return std::string_view{reinterpret_cast<const char*>(bytes_.data()), magic.size()} == magic;
    }
    [[nodiscard]] std::uint32_t userVersion() const { return number(60, 4); }
    [[nodiscard]] std::uint32_t applicationId() const { return number(68, 4); }

    /// What a process leaves that sets a database up and goes no further. Not so when there may be more in a log.
    [[nodiscard]] bool areOfEmptyPage() const {
        constexpr std::uint32_t withoutLog = 0x0101;
        constexpr std::uint32_t largestPage = 65536;
        const auto pageSize = number(16, 2) == 1 ? largestPage : number(16, 2);
        const auto cells = number(103, 2);
        return areOfDatabase() && userVersion() == 0 && applicationId() == 0 && number(18, 2) == withoutLog &&
               fileSize_ == pageSize && cells == 0;
    }

private:
    [[nodiscard]] std::uint32_t number(std::size_t place, std::size_t size) const {
        std::uint32_t value = 0;
        for (std::size_t index = place; index < place + size; ++index) {
            value = value << 8U | bytes_.at(index);
        }
        return value;
    }

    sqlite3_int64 fileSize_ = 0;
    std::array<unsigned char, 105> bytes_{};
};

}  // namespace

void checkCacheFileHeader(sqlite3* connection) {
    const FirstBytes header{connection};
    if (header.areNone() || header.areOfEmptyPage()) {
        return;
    }
    if (!header.areOfDatabase() || header.applicationId() != cacheApplicationId) {
        throw SqliteError{SQLITE_NOTADB, "the file is no cache"};
    }
    if (header.userVersion() != cacheLayoutVersion) {
        throw SqliteError{SQLITE_NOTADB, "the file is a cache of another version"};
    }
}

}  // namespace Tarnwick_API::Platform
