#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

class ProcessWideLookups : public testing::Test {
protected:
    void TearDown() override {
        Bundle::setMain({});
        Preferences::setLookup(nullptr);
    }
};

TEST_F(ProcessWideLookups, BundleGivesTextEntriesOnly) {
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

TEST_F(ProcessWideLookups, PreferencesAskTheHostEachTimeAndMayReplaceItsLookupMeanwhile) {
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

TEST_F(ProcessWideLookups, ReplacingWhileOthersAskIsSafe) {
    std::vector<std::jthread> threads;
    for (const auto* text : {"one", "another"}) {
        threads.emplace_back([text = std::string{text}] {
            for (int count = 0; count < 500; ++count) {
                Bundle::setMain(Bundle{{{"name", text}}});
                Preferences::setLookup([text](std::string_view) { return text; });
                const auto name = Bundle::main()->text("name");
                EXPECT_TRUE(name == "one" || name == "another");
                EXPECT_EQ(Preferences::text("any").value().empty(), false);
            }
        });
    }
}

}  // namespace
}  // namespace Tarnwick_API::Platform
