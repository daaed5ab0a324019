#pragma once

#include <Platform/Sqlite/SqliteConnection.hpp>

namespace Tarnwick_API::Platform {

enum class KeychainFileContent {
    empty,
    /// Bears a keychain's marks; whether it can still be read is another question.
    keychain,
    /// A database of somebody else.
    foreignDatabase,
    /// No database at all.
    unknown,
};

/// What the bytes of the file are that was just opened, without a lock and before SQLite looks at it: with a journal
/// beside it, or none of its tables in it, looking is the first step to changing it. Throws SqliteError.
[[nodiscard]] KeychainFileContent contentOfKeychainFile(const SqliteConnection& connection);

/// What marks a keychain in the header of an SQLite file.
inline constexpr unsigned keychainApplicationId = 0x54774B63;

/// How SQLite keeps the beginning of the table's definition, in every version of the layout.
inline constexpr const char* keychainTable =
    "CREATE TABLE item (id INTEGER PRIMARY KEY, service TEXT NOT NULL, account TEXT NOT NULL, label TEXT NOT NULL,"
    " comment TEXT NOT NULL, data BLOB, reference BLOB NOT NULL UNIQUE";

}  // namespace Tarnwick_API::Platform
