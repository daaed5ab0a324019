#pragma once

#include <Tarnwick_API/Export.hpp>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tarnwick_API::Platform {

/// A user's language and region.
class TARNWICK_API_EXPORT Locale {
public:
    /// Reads a POSIX or BCP 47 name: "de_DE.UTF-8", "zh-Hant-TW", "de_DE@euro". "C", "POSIX", names starting "C."
    /// and malformed ones have neither language nor region.
    [[nodiscard]] static Locale fromIdentifier(std::string_view identifier);

    /// The user's current locale, read afresh: the host's look-up, or else the system's. On macOS that is the first of
    /// the user's preferred languages with the region of the settings, elsewhere the first non-empty of the
    /// environment's LC_ALL, LC_MESSAGES and LANG. Thread: any.
    [[nodiscard]] static Locale current();

    /// Installs a process-wide source of the current locale's identifier; an empty one goes back to the system's.
    /// One that throws gives no locale for that time; the debug channel tells. Thread: any.
    static void setIdentifierLookup(std::function<std::string()> lookup);

    /// Two or three lower-case letters.
    [[nodiscard]] const std::optional<std::string>& languageCode() const noexcept { return language_; }
    /// Two upper-case letters or three digits.
    [[nodiscard]] const std::optional<std::string>& regionCode() const noexcept { return region_; }
    /// "de-DE", "zh-Hant-TW"; "en" when there is no language.
    [[nodiscard]] std::string languageTag() const;

    /// The name of the region with this code ("DE", "de", "DEU") in this locale's language, or in English when the
    /// locale has no language or no name is known in it; none for an unknown code.
    [[nodiscard]] std::optional<std::string> localizedRegionName(std::string_view regionCode) const;

private:
    std::optional<std::string> language_;
    std::optional<std::string> script_;
    std::optional<std::string> region_;
};

}  // namespace Tarnwick_API::Platform
