#include <Tarnwick_API/Platform/Application/Uuid.hpp>

#include <set>
#include <string_view>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace std::string_view_literals;

TEST(Uuid, ReadsEitherLetterCaseAndWritesUpperCase) {
    constexpr auto text = "01234567-89AB-CDEF-0123-456789ABCDEF";
    EXPECT_EQ(Uuid::fromString(text).value().uuidString(), text);
    EXPECT_EQ(Uuid::fromString("01234567-89ab-cdef-0123-456789abcdef"), Uuid::fromString(text));
    EXPECT_LT(Uuid::fromString("01234567-89AB-CDEF-0123-456789ABCDEE"), Uuid::fromString(text));
}

TEST(Uuid, RefusesEverythingElse) {
    for (const auto text : {""sv, "01234567-89AB-CDEF-0123-456789ABCDE"sv, "01234567-89AB-CDEF-0123-456789ABCDEF0"sv,
                            "{1234567-89AB-CDEF-0123-456789ABCDE}"sv, "01234567089AB-CDEF-0123-456789ABCDEF"sv,
                            "0123456-789AB-CDEF-0123-456789ABCDEF"sv, "01234567-89AB-CDEF-0123-456789ABCDEG"sv,
                            "01234567-89AB-CDEF-0123-456789ABCDE\0"sv, " 1234567-89AB-CDEF-0123-456789ABCDEF"sv}) {
        EXPECT_FALSE(Uuid::fromString(text)) << text;
    }
}

TEST(Uuid, RandomOnesAreOfVersionFourAndDiffer) {
    std::set<Uuid> seen;
    for (int count = 0; count < 1000; ++count) {
        const auto uuid = Uuid::random();
        EXPECT_THAT(uuid.uuidString(),
                    testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
        EXPECT_EQ(Uuid::fromString(uuid.uuidString()), uuid);
        seen.insert(uuid);
    }
    EXPECT_EQ(seen.size(), 1000U);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
