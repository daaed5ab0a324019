#include <Platform/Application/SystemLocale.hpp>

#include <Tarnwick_API/Platform/Application/Locale.hpp>

#include <Platform/CoreFoundation/CoreFoundationValues.hpp>

#include <CoreFoundation/CoreFoundation.h>

namespace Tarnwick_API::Platform {

namespace {

/// The language of the first identifier, script included, with the region of the user's settings, which the languages
/// need not have: who reads English may live in Germany.
std::string combined(const std::string& languageIdentifier, const std::optional<std::string>& region) {
    const auto chosen = Locale::fromIdentifier(languageIdentifier);
    if (!region || chosen.regionCode() == region) {
        return languageIdentifier;
    }
    auto tag = chosen.languageTag();
    if (chosen.regionCode()) {
        tag.resize(tag.size() - chosen.regionCode()->size() - 1);
    }
    return tag + '-' + *region;
}

}  // namespace

std::string systemLocaleIdentifier() {
    const Owned<CFLocaleRef> locale{CFLocaleCopyCurrent()};
    const auto value = [&](CFLocaleKey key) {
        return locale ? textOf(CFLocaleGetValue(locale.get(), key)) : std::nullopt;
    };
    for (const auto& identifier : systemLanguages()) {
        if (Locale::fromIdentifier(identifier).languageCode()) {
            return combined(identifier, value(kCFLocaleCountryCode));
        }
    }
    const auto language = value(kCFLocaleLanguageCode);
    return language ? combined(*language, value(kCFLocaleCountryCode)) : std::string{};
}

std::vector<std::string> systemLanguages() {
    const Owned<CFArrayRef> list{CFLocaleCopyPreferredLanguages()};
    std::vector<std::string> identifiers;
    for (CFIndex index = 0; list && index < CFArrayGetCount(list.get()); ++index) {
        if (auto identifier = textOf(CFArrayGetValueAtIndex(list.get(), index))) {
            identifiers.push_back(*std::move(identifier));
        }
    }
    return identifiers;
}

}  // namespace Tarnwick_API::Platform
