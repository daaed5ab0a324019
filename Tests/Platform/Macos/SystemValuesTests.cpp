// What the library finds on macOS without a line from the host.

#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/HostName.hpp>
#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <Platform/Application/SystemDisplayName.hpp>
#include <Platform/Application/UserFolders.hpp>
#include <Platform/Http/Requests/DefaultHeaders.hpp>

#include "AppleFrameworksDouble.hpp"

#include <cstdlib>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace AppleFrameworksDouble;
using Text = std::optional<std::string>;

class SystemValues : public ::testing::Test {
protected:
    void TearDown() override { expectNothingLeft(); }

    const ScopedProcessValues scope{ScopedProcessValues::Start::defaults};
};

constexpr const char* halfPair = "\xED\xA0\x80";

TEST_F(SystemValues, AreTheSystemsWhenTheyAreText) {
    const struct {
        const char* name;
        void (*put)(CFTypeRef value);
        Text (*read)();
    } services[] = {
        {"information", [](CFTypeRef value) { known().information["CFBundleName"] = value; },
         [] { return Bundle::main()->text("CFBundleName"); }},
        {"preference", [](CFTypeRef value) { known().preferences["cid"] = value; },
         [] { return Preferences::text("cid"); }},
        {"localized text", [](CFTypeRef value) { known().localizedTexts["Key"] = value; },
         [] {
             const auto text = Bundle::main()->localizedText("Key", "default");
             return text == "default" ? Text{} : text;
         }},
        {"display name", [](CFTypeRef value) { known().computerName = value; }, &systemDisplayName},
        {"language", [](CFTypeRef value) { known().preferredLanguages = array({value}); },
         [] { return Locale::current().languageCode(); }},
        {"language of the settings", [](CFTypeRef value) { known().locale[kCFLocaleLanguageCode] = value; },
         [] { return Locale::current().languageCode(); }},
        {"region",
         [](CFTypeRef value) {
             known().locale[kCFLocaleLanguageCode] = text("nb");
             known().locale[kCFLocaleCountryCode] = value;
         },
         [] {
             const auto region = Locale::current().regionCode();
             return region ? Text{"nb"} : region;
         }},
    };
    for (const auto& service : services) {
        SCOPED_TRACE(service.name);
        EXPECT_EQ(service.read(), std::nullopt);
        expectNothingLeft();
        const std::pair<CFTypeRef (*)(), Text> values[] = {{[] { return text("nb"); }, "nb"},
                                                           {[] { return made({}); }, {}},
                                                           {[] { return data("nb"); }, {}},
                                                           {[] { return text(halfPair); }, {}}};
        for (const auto& [make, expected] : values) {
            const auto* const value = make();
            service.put(value);
            EXPECT_EQ(service.read(), expected) << shown(value);
            expectNothingLeft();
        }
    }
}

TEST_F(SystemValues, GiveWayToTheHosts) {
    known().information["CFBundleName"] = text("system");
    known().information["CFBundleVersion"] = text("7");
    known().preferences["cid"] = text("system");
    known().computerName = text("system");
    known().preferredLanguages = array({text("nb-NO")});
    EXPECT_EQ(Bundle::main()->text("CFBundleName"), "system");
    EXPECT_EQ(HostName::localized(), "system");
    Bundle::setMain(Bundle{{{"CFBundleName", "host"}}});
    Preferences::setLookup([](std::string_view) { return std::nullopt; });
    HostName::setLookup([] { return "host"; });
    Locale::setIdentifierLookup([] { return "de_DE"; });
    EXPECT_EQ(Bundle::main()->text("CFBundleName"), "host");
    EXPECT_EQ(Bundle::main()->text("CFBundleVersion"), std::nullopt);
    EXPECT_EQ(Preferences::text("cid"), std::nullopt);
    EXPECT_EQ(HostName::localized(), "host");
    EXPECT_EQ(Locale::current().languageTag(), "de-DE");
}

TEST_F(SystemValues, LeaveTextsThatAreNotFoundToTheCaller) {
    const auto localized = [](std::string_view key, std::string_view defaultText) {
        return Bundle::main()->localizedText(key, defaultText);
    };
    EXPECT_EQ(localized("Key", ""), "");
    EXPECT_EQ(localized("\xFF", "default"), "default");
    EXPECT_EQ(localized("Key", "\xFF"), "\xFF");
    EXPECT_EQ(Bundle::main()->text("\xFF"), std::nullopt);
    EXPECT_EQ(Preferences::text("\xFF"), std::nullopt);
    known().localizedTexts["Key"] = text("");
    EXPECT_EQ(localized("Key", "default"), "");
    known().mainBundle = false;
    EXPECT_EQ(localized("Key", "default"), "default");
    EXPECT_EQ(Bundle::main()->text("CFBundleName"), std::nullopt);
}

TEST_F(SystemValues, CombineTheFirstLanguageWithTheRegionOfTheSettings) {
    const struct {
        std::vector<std::string> languages;
        const char* language;
        const char* region;
        const char* tag;
        const char* accepted;
    } rows[] = {
        {{"en-US", "de-DE"}, "de", "DE", "en-DE", "en-DE;q=1.0, en-US;q=0.9, de-DE;q=0.8"},
        {{"de-DE", "en-DE"}, "de", "DE", "de-DE", "de-DE;q=1.0, en-DE;q=0.9"},
        {{"zh-Hant-TW"}, "zh", "HK", "zh-Hant-HK", "zh-Hant-HK;q=1.0, zh-Hant-TW;q=0.9"},
        {{"es-419"}, "es", "MX", "es-MX", "es-MX;q=1.0, es-419;q=0.9"},
        {{"nb"}, "de", "NO", "nb-NO", "nb-NO;q=1.0, nb;q=0.9"},
        {{"fr-FR"}, "de", nullptr, "fr-FR", "fr-FR;q=1.0"},
        {{"no language", "it"}, "de", "IT", "it-IT", "it-IT;q=1.0, it;q=0.9"},
        {{}, "de", "AT", "de-AT", "de-AT;q=1.0"},
        {{}, nullptr, "AT", "en", "en;q=1.0"},
    };
    for (const auto& row : rows) {
        std::vector<CFTypeRef> languages;
        for (const auto& language : row.languages) {
            languages.push_back(text(language));
        }
        known().preferredLanguages = array(languages);
        if (row.language != nullptr) {
            known().locale[kCFLocaleLanguageCode] = text(row.language);
        }
        if (row.region != nullptr) {
            known().locale[kCFLocaleCountryCode] = text(row.region);
        }
        EXPECT_EQ(Locale::current().languageTag(), row.tag);
        EXPECT_THAT(defaultHttpHeaders(), testing::Contains(testing::Pair("Accept-Language", row.accepted)));
        expectNothingLeft();
    }
}

TEST_F(SystemValues, NameApplicationAndSystemInTheUserAgent) {
    known().information["CFBundleExecutable"] = text("Example");
    known().information["CFBundleShortVersionString"] = text("7.1");
    known().information["CFBundleIdentifier"] = text("org.example.App");
    known().information["CFBundleVersion"] = made({.text = "a number"});
    for (const auto& [version, shown] : {std::pair{Text{"14.4.1"}, "14.4.1"},
                                         {Text{"15"}, "15.0.0"},
                                         {Text{std::string(64, '1')}, "0.0.0"},
                                         {Text{}, "0.0.0"}}) {
        known().productVersion = version;
        EXPECT_THAT(defaultHttpHeaders(),
                    testing::Contains(testing::Pair(
                        "User-Agent", testing::StartsWith("Example/7.1 (org.example.App; build:Unknown; OS X " +
                                                          std::string{shown} + ") libcurl/"))));
    }
}

TEST_F(SystemValues, PutFilesIntoTheUsersLibrary) {
    const std::string home = std::getenv("HOME") == nullptr ? "" : std::getenv("HOME");
    known().information["CFBundleIdentifier"] = text("org.example.App");
    ::setenv("HOME", "/Users/someone", 1);
    EXPECT_EQ(defaultKeychainFile(), "/Users/someone/Library/Application Support/org.example.App/keychain.sqlite");
    EXPECT_EQ(userCacheFolder(), "/Users/someone/Library/Caches");
    ::setenv("HOME", home.c_str(), 1);
}

}  // namespace
}  // namespace Tarnwick_API::Platform
