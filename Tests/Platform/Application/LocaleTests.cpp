#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>

#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using Environment = std::map<std::string, std::optional<std::string>>;

void apply(const Environment& environment) {
    for (const auto& [name, value] : environment) {
        if (value) {
            setenv(name.c_str(), value->c_str(), 1);
        } else {
            unsetenv(name.c_str());
        }
    }
}

/// Leaves the environment as found.
class LocaleOfTheProcess : public testing::Test {
protected:
    LocaleOfTheProcess() {
        for (const auto* name : {"LC_ALL", "LC_MESSAGES", "LC_CTYPE", "LANG", "LANGUAGE"}) {
            const char* value = std::getenv(name);
            before_.emplace(name, value != nullptr ? std::optional<std::string>{value} : std::nullopt);
        }
    }

    ~LocaleOfTheProcess() override { apply(before_); }

    [[nodiscard]] Environment with(const Environment& set) const {
        auto environment = set;
        for (const auto& [name, value] : before_) {
            environment.try_emplace(name, std::nullopt);
        }
        return environment;
    }

private:
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
        {"de.UTF-8", "de", std::nullopt, "de"},
        {"de", "de", std::nullopt, "de"},
        {"DE-de", "de", "DE", "de-DE"},
        {"zh-Hant-TW", "zh", "TW", "zh-Hant-TW"},
        {"ZH_hANT_tw.Big5", "zh", "TW", "zh-Hant-TW"},
        {"zh_Hant", "zh", std::nullopt, "zh-Hant"},
        {"en_001", "en", "001", "en-001"},
        {"en_US_POSIX", "en", "US", "en-US"},
        {"en-IT-u-ca-gregory", "en", "IT", "en-IT"},
        {"en-u-ca-gregory", "en", std::nullopt, "en"},
        {"haw_US", "haw", "US", "haw-US"},
        {"xx_YY", "xx", "YY", "xx-YY"},
        {"de_", "de", std::nullopt, "de"},
        {"de_D", "de", std::nullopt, "de"},
        {"de_DEU", "de", std::nullopt, "de"},
        {"de_D1", "de", std::nullopt, "de"},
        {"de_12", "de", std::nullopt, "de"},
        {"de__DE", "de", std::nullopt, "de"},
        {"C", std::nullopt, std::nullopt, "en"},
        {"POSIX", std::nullopt, std::nullopt, "en"},
        {"C.UTF-8", std::nullopt, std::nullopt, "en"},
        {"", std::nullopt, std::nullopt, "en"},
        {"garbage", std::nullopt, std::nullopt, "en"},
        {"garbage_DE", std::nullopt, std::nullopt, "en"},
        {"_DE", std::nullopt, std::nullopt, "en"},
        {"d1_DE", std::nullopt, std::nullopt, "en"},
        {"@euro", std::nullopt, std::nullopt, "en"},
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
    struct Row {
        Environment environment;
        std::string_view tag;
        bool hasLanguage;
    };
    const Row rows[] = {
        {{}, "en", false},
        {{{"LANG", "de_DE.UTF-8"}}, "de-DE", true},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}}, "fr-FR", true},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", "fr_FR"}, {"LC_ALL", "it_IT"}}, "it-IT", true},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_MESSAGES", ""}, {"LC_ALL", ""}}, "de-DE", true},
        {{{"LANG", "de_DE.UTF-8"}, {"LC_ALL", "C"}}, "en", false},
        {{{"LANGUAGE", "de"}, {"LC_CTYPE", "de_DE"}}, "en", false},
    };
    for (const auto& row : rows) {
        apply(with(row.environment));
        EXPECT_EQ(Locale::current().languageTag(), row.tag);
        EXPECT_EQ(Locale::current().languageCode().has_value(), row.hasLanguage) << row.tag;
    }
}

TEST_F(LocaleOfTheProcess, IsWhatTheHostsLookupSaysEachTime) {
    apply(with({{"LC_ALL", "it_IT"}}));
    std::string identifier = "sv_SE";
    Locale::setIdentifierLookup([&identifier] { return identifier; });
    EXPECT_EQ(Locale::current().languageTag(), "sv-SE");
    identifier = "da_DK";
    EXPECT_EQ(Locale::current().languageTag(), "da-DK");
    identifier = "";
    EXPECT_FALSE(Locale::current().languageCode());
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
        {"de", "Germany", "Deutschland"},
        {"DEU", "Germany", "Deutschland"},
        {"UK", "United Kingdom", "Vereinigtes K\u00F6nigreich"},
        {"GB", "United Kingdom", "Vereinigtes K\u00F6nigreich"},
        {"EU", "European Union", "Europ\u00E4ische Union"},
        {"150", "Europe", "Europa"},
        {"XK", "Kosovo", "Kosovo"},
        {"CS", "Serbia", "Serbien"},
        {"ZZ", "Unknown Region", "Unbekannte Region"},
        {"XX", std::nullopt, std::nullopt},
        {"AB", std::nullopt, std::nullopt},
        {"D", std::nullopt, std::nullopt},
        {"D1", std::nullopt, std::nullopt},
        {"276", std::nullopt, std::nullopt},
        {"DE ", std::nullopt, std::nullopt},
        {"Deutschland", std::nullopt, std::nullopt},
        {"DE_POSIX", std::nullopt, std::nullopt},
        {"DE@x=y", std::nullopt, std::nullopt},
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
