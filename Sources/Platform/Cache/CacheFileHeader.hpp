#pragma once

#include <cstdint>

struct sqlite3;

namespace Tarnwick_API::Platform {

// The two numbers in the header of a file that tell whose it is, and in which layout.
constexpr std::uint32_t cacheApplicationId = 0x54774361;
constexpr std::uint32_t cacheLayoutVersion = 1;

/// Throws SqliteError unless the file that the connection has open is a cache of this version, or an empty one: without
/// a byte, or with a single page on which there is nothing. Changes nothing and waits for no lock; to come before
/// SQLite looks at the file: with a log or journal beside it, looking changes it.
void checkCacheFileHeader(sqlite3* connection);

}  // namespace Tarnwick_API::Platform
