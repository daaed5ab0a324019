// A damaged cache file, and rows in it whose check value is right all the same: what is found is what was stored, or at
// least an entry, and the cache goes on.

#include <Platform/Cache/DiskUrlCache.hpp>

#include "DamagedFile.hpp"

#include <zlib.h>

using namespace Tarnwick_API::Platform;

constexpr std::size_t capacity = 20'000;

/// The last one takes pages of its own.
CachedUrlResponse entryOf(const std::string& key) {
    return {{200, {{"etag", key}}}, std::make_shared<const Bytes>(key == "c" ? 9000 : 300, key[0]), UserInformation{}};
}

std::string goodFile(const std::filesystem::path& folder) {
    for (const auto* const key : {"a", "b", "c"}) {
        DiskUrlCache{folder, capacity}.store(key, entryOf(key));
    }
    return contentOf(folder / "Cache.db");
}

bool isFound(DiskUrlCache& cache, const std::string& key) {
    const auto found = cache.find(key);
    require(!found || holdSame(*found, entryOf(key)), "what is found is what was stored");
    return found != nullptr;
}

/// `head` as that of a row without key and body.
void checkRow(const Bytes& head) {
    const auto value = crc32(0, reinterpret_cast<const Bytef*>(head.data()), static_cast<uInt>(head.size()));
    EncodedResponse row{head, std::make_shared<const Bytes>(), 0, static_cast<std::int64_t>(value)};
    for (; row.size <= static_cast<std::int64_t>(head.size()); ++row.size) {
        if (const auto found = decode("", row)) {
            const auto again = encode("", *found);
            const auto reread = decode("", again);
            require(again.size == row.size && reread && encode("", *reread).head == again.head, "an entry is kept");
        }
    }
}

void fuzz(FuzzInput input) {
    static const TemporaryFolder folder;
    static const auto good = goodFile(folder.path());
    const auto kind = input.choice(3);
    if (kind == 2) {
        checkRow(input.rest());
        return;
    }
    const bool isGood = writeDamaged(folder.path() / "Cache.db", good, input) == good;
    DiskUrlCache cache{folder.path(), capacity};
    for (const auto* const key : {"a", "b", "c"}) {
        require(isFound(cache, key) || !isGood, "a good file is read");
    }
    cache.store("d", entryOf("d"));
    // Behind a damaged index an entry may be out of reach: the next request is a miss then, and no more.
    require(isFound(cache, "d") || !isGood, "what is stored in a good file is found");
    if (kind == 1) {
        cache.removeAll();
    }
    cache.remove("a");
    require(!cache.find("a") && (kind == 0 || !cache.find("d")), "what is removed is not found");
    require(std::filesystem::file_size(folder.path() / "Cache.db") <= 8 * good.size(), "a file stays in measure");
}
