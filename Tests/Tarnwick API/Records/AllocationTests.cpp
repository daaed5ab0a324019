#include <Tarnwick_API/Records/FavoriteItem.hpp>
#include <Tarnwick_API/Records/LenientReading.hpp>
#include <Tarnwick_API/Records/Server.hpp>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <string>

#include <gtest/gtest.h>

namespace {

std::atomic<std::size_t> allocations{0};

}  // namespace

// NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory): the counting allocator itself
void* operator new(std::size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc{};
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
// NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)

namespace Tarnwick_API {
namespace {

TEST(Allocations, AreOneForAServerOfAList) {
    std::string list = "[";
    for (int number = 0; number < 1000; ++number) {
        list += number == 0 ? "" : ",";
        list +=
            R"({"id":"1","name":"a-name-beyond-the-small-string","displayName":"Oslo","ip":"203.0.113.1","ipv6":null,
            "Max_Users":"150","totalusers":"42","countrycode":"NO","distance":"+12.5","latitude":"unknown",
            "longitude":"10.7","city":"Oslo"})";
    }
    list += ']';
    (void)decodeServers(list, ServerJsonKind::short_);
    const std::size_t before = allocations;
    EXPECT_EQ(decodeServers(list, ServerJsonKind::short_).size(), 1000U);
    EXPECT_LE(allocations - before, 1000U + 5U);
}

TEST(Allocations, AreNoneForALenientMiss) {
    const Platform::JsonDocument document{R"({"object":{},"null":null,"text":"n/a","number":42.5})"};
    const auto object = document.root().require<Platform::JsonObject>();
    (void)decodeDouble(object, "text");
    const std::size_t before = allocations;
    for (const auto* key : {"object", "null", "missing", "text"}) {
        EXPECT_FALSE(decodeInt(object, key));
        EXPECT_FALSE(decodeDouble(object, key));
        EXPECT_FALSE(decodeTimeInterval(object, key));
        EXPECT_FALSE(decodeDate(object, key));
        EXPECT_FALSE(decodeLocationType(object, key));
    }
    for (const auto* key : {"object", "null", "missing", "number"}) {
        EXPECT_FALSE(decodeBool(object, key));
        EXPECT_FALSE(decodeString(object, key));
    }
    EXPECT_EQ(allocations, before);
}

}  // namespace
}  // namespace Tarnwick_API
