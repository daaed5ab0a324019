#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <Platform/Text/AsciiCharacters.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

namespace {

bool isPathCharacter(char character) {
    constexpr std::string_view others = "-_.!~*'()$&+,/:=@";
    return isAsciiAlphanumeric(character) || others.find(character) != std::string_view::npos;
}

bool isLegalCharacter(char character) {
    constexpr std::string_view others = ";?[]#%";
    return isPathCharacter(character) || others.find(character) != std::string_view::npos;
}

bool hasBrokenEscape(std::string_view text) {
    for (auto at = text.find('%'); at != std::string_view::npos; at = text.find('%', at + 1)) {
        const auto digits = text.substr(at + 1, 2);
        if (digits.size() != 2 || !std::ranges::all_of(digits, isAsciiHexDigit)) {
            return true;
        }
    }
    return false;
}

void appendPercentEncoded(std::string& text, char character) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(character);
    text += '%';
    text += digits[byte >> 4U];
    text += digits[byte & 0x0FU];
}

std::string_view schemeOf(std::string_view text) {
    const auto end = text.find_first_of(":/?#");
    if (end == std::string_view::npos || text[end] != ':') {
        return {};
    }
    const auto scheme = text.substr(0, end);
    const auto isSchemeCharacter = [](char character) {
        return isAsciiAlphanumeric(character) || character == '+' || character == '-' || character == '.';
    };
    const bool valid =
        !scheme.empty() && isAsciiLetter(scheme.front()) && std::ranges::all_of(scheme, isSchemeCharacter);
    return valid ? scheme : std::string_view{};
}

/// The places of a URL's parts, by offset into its text.
struct Layout {
    std::size_t authorityBegin;
    std::size_t pathBegin;
    std::size_t pathEnd;
};

Layout layoutOf(std::string_view text) {
    const auto scheme = schemeOf(text);
    const auto afterScheme = scheme.empty() ? 0 : scheme.size() + 1;
    Layout layout{afterScheme, afterScheme, std::min(text.find_first_of("?#"), text.size())};
    if (text.substr(afterScheme, 2) == "//") {
        layout.authorityBegin = afterScheme + 2;
        layout.pathBegin = std::min(text.find_first_of("/?#", layout.authorityBegin), text.size());
    }
    return layout;
}

struct HostAndPort {
    std::string_view host;
    std::string_view port;
};

/// An authority whose brackets are not those of an IPv6 address has no host: guessing one might reach another machine
/// than the transfer would.
HostAndPort hostAndPortOf(std::string_view text) {
    const auto layout = layoutOf(text);
    auto authority = text.substr(layout.authorityBegin, layout.pathBegin - layout.authorityBegin);
    authority.remove_prefix(authority.rfind('@') + 1);
    HostAndPort result;
    if (authority.starts_with('[')) {
        const auto end = authority.find(']');
        if (end == std::string_view::npos) {
            return {};
        }
        result.host = authority.substr(1, end - 1);
        authority.remove_prefix(end + 1);
        if (!authority.empty() && authority.front() != ':') {
            return {};
        }
    } else {
        result.host = authority.substr(0, authority.find(':'));
        authority.remove_prefix(result.host.size());
    }
    result.port = authority.empty() ? authority : authority.substr(1);
    return result;
}

}  // namespace

std::optional<Url> Url::fromString(std::string_view text) {
    if (text.empty() || !std::ranges::all_of(text, isLegalCharacter) || std::ranges::count(text, '#') > 1 ||
        hasBrokenEscape(text)) {
        return std::nullopt;
    }
    return Url{std::string{text}};
}

Url Url::appendingPathComponent(std::string_view component) const {
    const auto layout = layoutOf(text_);
    const auto path = std::string_view{text_}.substr(layout.pathBegin, layout.pathEnd - layout.pathBegin);
    auto result = text_.substr(0, layout.pathEnd);
    if (!path.ends_with('/') && !component.starts_with('/')) {
        result += '/';
    }
    for (const char character : component) {
        if (isPathCharacter(character)) {
            result += character;
        } else {
            appendPercentEncoded(result, character);
        }
    }
    return Url{result.append(text_, layout.pathEnd)};
}

Url Url::appendingQuery(std::string_view query) const {
    if (query.empty()) {
        return *this;
    }
    const auto fragmentBegin = std::min(text_.find('#'), text_.size());
    auto result = text_.substr(0, fragmentBegin);
    result += result.find('?') == std::string::npos ? '?' : '&';
    result += query;
    return Url{result.append(text_, fragmentBegin)};
}

std::string_view Url::scheme() const noexcept {
    return schemeOf(text_);
}

std::string_view Url::host() const noexcept {
    return hostAndPortOf(text_).host;
}

std::string_view Url::port() const noexcept {
    return hostAndPortOf(text_).port;
}

}  // namespace Tarnwick_API::Platform
