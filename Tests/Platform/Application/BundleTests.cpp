#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

TEST(Bundle, GivesTextEntriesOnly) {
    const ScopedProcessValues scope;
    EXPECT_FALSE(Bundle::main()->text("CFBundleVersion"));
    Bundle::setMain(Bundle{{{"CFBundleName", std::string{"Shop"}},
                            {"Empty", std::string{}},
                            {"Integer", std::int64_t{7}},
                            {"Real", 7.5},
                            {"Boolean", true}},
                           {{"CountryNameReturn", "Private Adresse"}}});
    EXPECT_EQ(Bundle::main()->text("CFBundleName"), "Shop");
    EXPECT_EQ(Bundle::main()->text("Empty"), "");
    for (const auto* key : {"Integer", "Real", "Boolean", "cfbundlename", "CountryNameReturn", ""}) {
        EXPECT_FALSE(Bundle::main()->text(key)) << key;
    }
    EXPECT_EQ(Bundle::main()->localizedText("CountryNameReturn", "Private IP"), "Private Adresse");
    EXPECT_EQ(Bundle::main()->localizedText("CFBundleName", "Private IP"), "Private IP");
}

TEST(Preferences, AskTheHostEachTimeAndMayReplaceItsLookupMeanwhile) {
    const ScopedProcessValues scope;
    EXPECT_FALSE(Preferences::text("cid"));
    int answers = 0;
    Preferences::setLookup([&answers](std::string_view key) -> std::optional<std::string> {
        return key == "cid" ? std::optional{std::to_string(++answers)} : std::nullopt;
    });
    EXPECT_EQ(Preferences::text("cid"), "1");
    EXPECT_EQ(Preferences::text("cid"), "2");
    EXPECT_FALSE(Preferences::text("CID"));

    // Deadlocks or reads a dead capture when the look-up is called under the lock or without being kept.
    Preferences::setLookup([owned = std::string(100, 'x')](std::string_view) {
        Preferences::setLookup(nullptr);
        return std::optional{owned};
    });
    EXPECT_EQ(Preferences::text("cid"), std::string(100, 'x'));
    EXPECT_FALSE(Preferences::text("cid"));
}

}  // namespace
}  // namespace Tarnwick_API::Platform
