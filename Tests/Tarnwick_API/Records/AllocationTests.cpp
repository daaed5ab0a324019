#include <Tarnwick_API/Records/FavoriteItem.hpp>
#include <Tarnwick_API/Records/LenientReading.hpp>
#include <Tarnwick_API/Records/Server.hpp>

#include "AllocationCount.hpp"

#include <cstddef>
#include <string>

#include <gtest/gtest.h>

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
    const std::size_t before = allocationCount();
    EXPECT_EQ(decodeServers(list, ServerJsonKind::short_).size(), 1000U);
    EXPECT_LE(allocationCount() - before, 1000U + 5U);
}

TEST(Allocations, AreNoneForALenientMiss) {
    const Platform::JsonDocument document{R"({"object":{},"null":null,"text":"n/a","number":42.5})"};
    const auto object = document.root().require<Platform::JsonObject>();
    (void)decodeDouble(object, "text");
    const std::size_t before = allocationCount();
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
    EXPECT_EQ(allocationCount(), before);
}

}  // namespace
}  // namespace Tarnwick_API
