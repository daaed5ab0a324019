#include <Tarnwick_API/Platform/Application/Locale.hpp>

#include <Platform/Application/HostLookup.hpp>
#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Application/SystemLocale.hpp>
#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <array>
#include <utility>

#include <unicode/uloc.h>
#include <unicode/unistr.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr ProcessWide installedLocaleIdentifierLookup{&ProcessValues::localeIdentifierLookup};

bool isLetters(std::string_view text) {
    return std::ranges::all_of(text, isAsciiLetter);
}

bool isLanguage(std::string_view text) {
    return (text.size() == 2 || text.size() == 3) && isLetters(text);
}

bool isScript(std::string_view text) {
    return text.size() == 4 && isLetters(text);
}

bool isRegion(std::string_view text) {
    return (text.size() == 2 && isLetters(text)) || (text.size() == 3 && std::ranges::all_of(text, isAsciiDigit));
}

/// The part of `rest` before the next separator, which is taken off it.
std::string_view takeSubtag(std::string_view& rest) {
    const auto end = std::min(rest.find_first_of("_-"), rest.size());
    const auto subtag = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return subtag;
}

/// The name of a region by the names of one language alone. ICU's own answer to what it does not know, the bare code
/// or a name in the language of the process, carries the warning that is refused here.
std::optional<std::string> regionName(const std::string& languageTag, std::string_view regionCode) {
    const auto region = "en_" + std::string{regionCode};
    std::array<UChar, 256> buffer{};
    auto status = U_ZERO_ERROR;
    const auto length = uloc_getDisplayCountry(region.c_str(), languageTag.c_str(), buffer.data(),
                                               static_cast<std::int32_t>(buffer.size()), &status);
    if (U_FAILURE(status) != 0 || status == U_USING_DEFAULT_WARNING || length <= 0) {
        return std::nullopt;
    }
    std::string name;
    icu::UnicodeString{buffer.data(), length}.toUTF8String(name);
    return name;
}

/// ICU gives no warning when it maps an old code ("UK") and then finds no names in the language, so the language is
/// tried with a code that needs no mapping.
bool hasRegionNames(const std::string& languageTag) {
    return regionName(languageTag, "DE").has_value();
}

}  // namespace

Locale Locale::fromIdentifier(std::string_view identifier) {
    auto rest = identifier.substr(0, identifier.find_first_of(".@"));
    Locale locale;
    // "C" and "POSIX" are no languages by their length alone.
    const auto language = takeSubtag(rest);
    if (!isLanguage(language)) {
        return locale;
    }
    locale.language_ = asciiLowerCased(language);
    auto subtag = takeSubtag(rest);
    if (isScript(subtag)) {
        locale.script_ = asciiUpperCased(subtag.substr(0, 1)) + asciiLowerCased(subtag.substr(1));
        subtag = takeSubtag(rest);
    }
    if (isRegion(subtag)) {
        locale.region_ = asciiUpperCased(subtag);
    }
    return locale;
}

Locale Locale::current() {
    if (const auto lookup = installedLocaleIdentifierLookup.get()) {
        return fromIdentifier(askHost("Locale::current", *lookup));
    }
    return fromIdentifier(systemLocaleIdentifier());
}

void Locale::setIdentifierLookup(std::function<std::string()> lookup) {
    installedLocaleIdentifierLookup.set(std::move(lookup));
}

std::string Locale::languageTag() const {
    if (!language_) {
        return "en";
    }
    auto tag = *language_;
    for (const auto* subtag : {&script_, &region_}) {
        if (*subtag) {
            tag += '-' + **subtag;
        }
    }
    return tag;
}

std::optional<std::string> Locale::localizedRegionName(std::string_view regionCode) const {
    // More than a region code would be read by ICU as further parts of a locale's name.
    if (regionCode.size() < 2 || regionCode.size() > 3 || !std::ranges::all_of(regionCode, isAsciiAlphanumeric)) {
        return std::nullopt;
    }
    const auto tag = languageTag();
    if (hasRegionNames(tag)) {
        if (auto name = regionName(tag, regionCode)) {
            return name;
        }
    }
    return regionName("en", regionCode);
}

}  // namespace Tarnwick_API::Platform
