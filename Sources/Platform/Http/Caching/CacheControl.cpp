#include <Platform/Http/Caching/CacheControl.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>

namespace Tarnwick_API::Platform {

namespace {

/// Cuts the next member of a list off `list`; a comma within a quoted text is none.
std::string_view nextMember(std::string_view& list) {
    bool isQuoted = false;
    std::size_t end = 0;
    for (; end < list.size() && (isQuoted || list[end] != ','); ++end) {
        if (list[end] == '"') {
            isQuoted = !isQuoted;
        } else if (isQuoted && list[end] == '\\') {
            ++end;
        }
    }
    end = std::min(end, list.size());
    const auto member = list.substr(0, end);
    list.remove_prefix(std::min(end + 1, list.size()));
    return trimmed(member);
}

std::string_view unquoted(std::string_view text) {
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

}  // namespace

std::optional<std::chrono::seconds> parseDeltaSeconds(std::string_view text) {
    if (text.empty() || !std::all_of(text.begin(), text.end(), isAsciiDigit)) {
        return std::nullopt;
    }
    constexpr std::int64_t longest = std::int64_t{1} << 31U;
    std::int64_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    return std::chrono::seconds{error == std::errc{} ? std::min(seconds, longest) : longest};
}

CacheControl parseCacheControl(std::string_view value) {
    CacheControl control;
    while (!value.empty()) {
        const auto member = nextMember(value);
        const auto equals = member.find('=');
        const auto name = trimmed(member.substr(0, equals));
        const auto argument =
            equals == std::string_view::npos ? std::string_view{} : unquoted(trimmed(member.substr(equals + 1)));
        if (equalsIgnoringAsciiCase(name, "no-store")) {
            control.noStore = true;
        } else if (equalsIgnoringAsciiCase(name, "no-cache")) {
            control.noCache = true;
        } else if (equalsIgnoringAsciiCase(name, "max-age")) {
            const auto age = parseDeltaSeconds(argument).value_or(std::chrono::seconds{0});
            control.maxAge = std::min(control.maxAge.value_or(age), age);
        } else if (equalsIgnoringAsciiCase(name, "min-fresh")) {
            control.minFresh = parseDeltaSeconds(argument);
        }
    }
    return control;
}

}  // namespace Tarnwick_API::Platform
