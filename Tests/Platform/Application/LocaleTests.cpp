#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>

#include <array>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using Environment = std::map<std::string, std::string>;

/// Leaves the environment as found.
class LocaleOfTheProcess : public testing::Test {
protected:
    LocaleOfTheProcess() {
        for (const auto* name : names_) {
            if (const char* value = std::getenv(name)) {
                before_.emplace(name, value);
            }
        }
    }
    ~LocaleOfTheProcess() override { setEnvironment(before_); }

    static void setEnvironment(const Environment& environment) {
        for (const auto* name : names_) {
            unsetenv(name);
        }
        for (const auto& [name, value] : environment) {
            setenv(name.c_str(), value.c_str(), 1);
        }
    }

private:
    static constexpr std::array names_{"LC_ALL", "LC_MESSAGES", "LC_CTYPE", "LANG", "LANGUAGE"};
    ScopedProcessValues scope_;
    Environment before_;
};

TEST(Locale, IsReadFromAnIdentifier) {
    struct Row {
        std::string_view identifier;
        std::optional<std::string_view> language;
        std::optional<std::string_view> region;
        std::string_view tag;
    };
    const Row rows[] = {
        {"de_DE.UTF-8", "de", "DE", "de-DE"},
        {"de_DE@euro", "de", "DE", "de-DE"},
        {"de", "de", std::nullopt, "de"},
        {"zh-Hant-TW", "zh", "TW", "zh-Hant-TW"},
        {"ZH_hANT_tw.Big5", "zh", "TW", "zh-Hant-TW"},
        {"zh_Hant", "zh", std::nullopt, "zh-Hant"},
        {"en_001", "en", "001", "en-001"},
        {"en_US_POSIX", "en", "US", "en-US"},
        {"en-u-ca-gregory", "en", std::nullopt, "en"},
        {"haw_US", "haw", "US", "haw-US"},
        {"de_DEU", "de", std::nullopt, "de"},
        {"de_D1", "de", std::nullopt, "de"},
        {"de_12", "de", std::nullopt, "de"},
        {"de__DE", "de", std::nullopt, "de"},
        {"C.UTF-8", std::nullopt, std::nullopt, "en"},
        {"", std::nullopt, std::nullopt, "en"},
        {"garbage_DE", std::nullopt, std::nullopt, "en"},
        {"d1_DE", std::nullopt, std::nullopt, "en"},
        {"\u00E9_FR", std::nullopt, std::nullopt, "en"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.identifier);
        const auto locale = Locale::fromIdentifier(row.identifier);
        EXPECT_EQ(locale.languageCode(), row.language);
        EXPECT_EQ(locale.regionCode(), row.region);
        EXPECT_EQ(locale.languageTag(), row.tag);
    }
}

TEST_F(LocaleOfTheProcess, IsTheFirstVariableThatSaysSomething) {
    const std::pair<Environment, std::string_view> rows[] = {
        {{}, "en"},
        {{{"LANG", "de_DE.UTF-8"}}, "de-DE"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}}, "fr-FR"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}, {"LC_ALL", "it_IT"}}, "it-IT"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", ""}, {"LC_ALL", ""}}, "de-DE"},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_ALL", "C"}}, "en"},
        {{{"LANGUAGE", "de"}, {"LC_CTYPE", "de_DE"}}, "en"},
    };
    for (const auto& [environment, tag] : rows) {
        setEnvironment(environment);
        EXPECT_EQ(Locale::current().languageTag(), tag);
        EXPECT_EQ(Locale::current().languageCode().has_value(), tag != "en");
    }
}

TEST_F(LocaleOfTheProcess, IsWhatTheHostsLookupSaysEachTime) {
    setEnvironment({{"LC_ALL", "it_IT"}});
    std::string identifier;
    Locale::setIdentifierLookup([&identifier] { return identifier; });
    for (const auto& [said, tag] : {std::pair{"sv_SE", "sv-SE"}, {"da_DK", "da-DK"}, {"", "en"}}) {
        identifier = said;
        EXPECT_EQ(Locale::current().languageTag(), tag);
    }
    Locale::setIdentifierLookup(nullptr);
    EXPECT_EQ(Locale::current().languageTag(), "it-IT");
}

TEST(Locale, NamesRegionsInItsLanguage) {
    struct Row {
        std::string_view code;
        std::optional<std::string_view> english;
        std::optional<std::string_view> german;
    };
    const Row rows[] = {
        {"DE", "Germany", "Deutschland"},
        {"UK", "United Kingdom", "Vereinigtes K\u00F6nigreich"},
        {"150", "Europe", "Europa"},
        {"XX", std::nullopt, std::nullopt},
        {"D", std::nullopt, std::nullopt},
        {"DE ", std::nullopt, std::nullopt},
        {"DE_POSIX", std::nullopt, std::nullopt},
        {"", std::nullopt, std::nullopt},
    };
    const auto german = Locale::fromIdentifier("de_AT.UTF-8");
    for (const auto& row : rows) {
        SCOPED_TRACE(row.code);
        EXPECT_EQ(german.localizedRegionName(row.code), row.german);
        // No language, and languages without any names or with ICU's default locale behind them, end at English.
        for (const auto* identifier : {"en_US", "C", "xx_YY", "nan_TW"}) {
            EXPECT_EQ(Locale::fromIdentifier(identifier).localizedRegionName(row.code), row.english) << identifier;
        }
    }
    EXPECT_EQ(Locale::fromIdentifier("zh_Hant_TW").localizedRegionName("DE"), "\u5FB7\u570B");
    EXPECT_EQ(Locale::fromIdentifier("zh-Hans-CN").localizedRegionName("DE"), "\u5FB7\u56FD");
}

}  // namespace
}  // namespace Tarnwick_API::Platform
