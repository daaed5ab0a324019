#include <Platform/Http/Requests/DefaultHeaders.hpp>

#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Application/RunningSystem.hpp>
#include <Platform/Application/SystemLocale.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::size_t maximumLanguages = 6;

std::string operatingSystem() {
    const auto system = runningSystem();
    return system.name + " " + threeNumbers(system.release);
}

/// The locale's language, then the other ones that the user has chosen.
std::vector<std::string> preferredLanguages() {
    std::vector<std::string> tags{Locale::current().languageTag()};
    for (const auto& identifier : systemLanguages()) {
        const auto locale = Locale::fromIdentifier(identifier);
        if (locale.languageCode() && std::find(tags.begin(), tags.end(), locale.languageTag()) == tags.end()) {
            tags.push_back(locale.languageTag());
        }
    }
    return tags;
}

}  // namespace

std::string acceptLanguage(const std::vector<std::string>& tags) {
    std::string value;
    for (std::size_t index = 0; index < std::min(tags.size(), maximumLanguages); ++index) {
        value += index == 0 ? "" : ", ";
        value += tags[index];
        value += index == 0 ? ";q=1.0" : ";q=0." + std::to_string(10 - index);
    }
    return value;
}

std::string threeNumbers(std::string_view release) {
    std::array<std::string, 3> numbers;
    std::size_t index = 0;
    for (const char character : release) {
        if (character >= '0' && character <= '9') {
            numbers[index] += character;
        } else if (character != '.' || ++index == numbers.size()) {
            break;
        }
    }
    std::string text;
    for (const auto& number : numbers) {
        text += text.empty() ? "" : ".";
        text += number.empty() ? "0" : number;
    }
    return text;
}

std::string userAgent(const Bundle& bundle, std::string_view system, std::string_view library) {
    const std::array entries{bundle.text("CFBundleExecutable"), bundle.text("CFBundleShortVersionString"),
                             bundle.text("CFBundleIdentifier"), bundle.text("CFBundleVersion")};
    std::string value;
    if (std::any_of(entries.begin(), entries.end(), [](const auto& entry) { return entry.has_value(); })) {
        const auto entry = [&](std::size_t index) { return entries[index].value_or("Unknown"); };
        value.append(entry(0)).append("/").append(entry(1)).append(" (").append(entry(2));
        value.append("; build:").append(entry(3)).append("; ").append(system).append(") ");
    }
    value += library;
    // A line break in one of the host's texts would make every request unfit to be sent.
    std::replace_if(
        value.begin(), value.end(), [](unsigned char character) { return character < 0x20 || character == 0x7F; }, ' ');
    return value;
}

HttpHeaders defaultHttpHeaders() {
    const std::string library = std::string{"libcurl/"} + curl_version_info(CURLVERSION_NOW)->version;
    return {
        {"Accept-Encoding", "gzip;q=1.0, compress;q=0.5"},
        {"Accept-Language", acceptLanguage(preferredLanguages())},
        {"User-Agent", userAgent(*Bundle::main(), operatingSystem(), library)},
    };
}

}  // namespace Tarnwick_API::Platform
