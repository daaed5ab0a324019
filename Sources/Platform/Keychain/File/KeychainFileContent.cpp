#include <Platform/Keychain/File/KeychainFileContent.hpp>

#include <Platform/Sqlite/SqliteError.hpp>

#include <algorithm>
#include <string>
#include <string_view>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

using namespace std::string_view_literals;

constexpr auto magic = "SQLite format 3\0"sv;
constexpr std::size_t applicationIdOffset = 68;
/// Holds the definitions of the few tables, at SQLite's own page size and at any smaller one.
constexpr std::size_t firstPage = 4096;

unsigned bigEndian(std::string_view bytes) {
    unsigned number = 0;
    for (const unsigned char byte : bytes) {
        number = number << 8U | byte;
    }
    return number;
}

}  // namespace

// Read through SQLite's own handle: a descriptor of ours would, when closed, take the locks of every connection of this
// process to the file with it, and the file may be a host's own.
KeychainFileContent contentOfKeychainFile(const SqliteConnection& connection) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(connection.handle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
    sqlite3_int64 size = 0;
    if (const int code = file->pMethods->xFileSize(file, &size); code != SQLITE_OK) {
        throw SqliteError{code, connection.handle()};
    }
    if (size == 0) {
        return KeychainFileContent::empty;
    }
    std::string page(static_cast<std::size_t>(std::min<sqlite3_int64>(size, firstPage)), '\0');
    if (const int code = file->pMethods->xRead(file, page.data(), static_cast<int>(page.size()), 0);
        code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) {
        throw SqliteError{code, connection.handle()};
    }
    const bool isDatabase = page.starts_with(magic);
    const bool isMarked = isDatabase && page.size() >= applicationIdOffset + 4 &&
                          bigEndian(std::string_view{page}.substr(applicationIdOffset, 4)) == keychainApplicationId;
    // The first layout had no mark but its table; a damaged header may have none either.
    if (isMarked || page.find(keychainTable) != std::string::npos) {
        return KeychainFileContent::keychain;
    }
    return isDatabase ? KeychainFileContent::foreignDatabase : KeychainFileContent::unknown;
}

}  // namespace Tarnwick_API::Platform
