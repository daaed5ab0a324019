#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/CharacterSet.hpp>

#include <algorithm>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr auto pathCharacters = CharacterSet::alphanumericAnd("-_.!~*'()$&+,/:=@");
constexpr auto legalCharacters = CharacterSet::alphanumericAnd("-_.!~*'()$&+,/:=@;?[]#%");
constexpr auto schemeCharacters = CharacterSet::alphanumericAnd("+-.");
constexpr CharacterSet endsOfScheme{":/?#"};
constexpr CharacterSet endsOfAuthority{"/?#"};
constexpr CharacterSet endsOfPath{"?#"};

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
    const auto scheme = text.substr(0, endsOfScheme.firstIn(text));
    const bool isFollowedByColon = scheme.size() < text.size() && text[scheme.size()] == ':';
    const bool isValid = !scheme.empty() && isAsciiLetter(scheme.front()) && schemeCharacters.containsAll(scheme);
    return isFollowedByColon && isValid ? scheme : std::string_view{};
}

}  // namespace

Url::Url(std::string text) : text_{std::move(text)} {
    const std::string_view whole{text_};
    parts_.schemeSize = schemeOf(whole).size();
    parts_.pathBegin = parts_.schemeSize == 0 ? 0 : parts_.schemeSize + 1;
    if (whole.substr(parts_.pathBegin, 2) == "//") {
        const auto authorityBegin = parts_.pathBegin + 2;
        parts_.pathBegin = endsOfAuthority.firstIn(whole, authorityBegin);
        findHostAndPort(authorityBegin);
    }
}

/// An authority whose brackets are not those of an IPv6 address has no host: guessing one might reach another machine
/// than the transfer would.
void Url::findHostAndPort(std::size_t authorityBegin) {
    auto authority = std::string_view{text_}.substr(0, parts_.pathBegin);
    authority.remove_prefix(std::max(authorityBegin, authority.rfind('@') + 1));
    const auto offset = [this](std::string_view rest) { return parts_.pathBegin - rest.size(); };
    if (authority.starts_with('[')) {
        const auto end = authority.find(']');
        const auto afterEnd = end == std::string_view::npos ? end : end + 1;
        if (afterEnd > authority.size() || (afterEnd < authority.size() && authority[afterEnd] != ':')) {
            return;
        }
        parts_.host = {offset(authority) + 1, end - 1};
        authority.remove_prefix(afterEnd);
    } else {
        parts_.host = {offset(authority), std::min(authority.find(':'), authority.size())};
        authority.remove_prefix(parts_.host.size);
    }
    if (!authority.empty()) {
        authority.remove_prefix(1);
        parts_.port = {offset(authority), authority.size()};
    }
}

std::optional<Url> Url::fromString(std::string_view text) {
    if (text.empty() || !legalCharacters.containsAll(text) || std::ranges::count(text, '#') > 1 ||
        hasBrokenEscape(text)) {
        return std::nullopt;
    }
    return Url{std::string{text}};
}

Url Url::appendingPathComponent(std::string_view component) const {
    const auto pathEnd = endsOfPath.firstIn(text_, parts_.pathBegin);
    const auto path = std::string_view{text_}.substr(parts_.pathBegin, pathEnd - parts_.pathBegin);
    std::string text;
    text.reserve(text_.size() + 1 + component.size());
    text.append(text_, 0, pathEnd);
    if (!path.ends_with('/') && !component.starts_with('/')) {
        text += '/';
    }
    for (const char character : component) {
        if (pathCharacters.contains(character)) {
            text += character;
        } else {
            appendPercentEncoded(text, character);
        }
    }
    text.append(text_, pathEnd);
    // Without a host the new path may be read as one.
    return host().empty() ? Url{std::move(text)} : Url{std::move(text), parts_};
}

Url Url::appendingQuery(std::string_view query) const {
    if (query.empty()) {
        return *this;
    }
    const auto fragmentBegin = std::min(text_.find('#'), text_.size());
    std::string text;
    text.reserve(text_.size() + 1 + query.size());
    text.append(text_, 0, fragmentBegin);
    text += text.find('?') == std::string::npos ? '?' : '&';
    text.append(query).append(text_, fragmentBegin);
    return Url{std::move(text), parts_};
}

}  // namespace Tarnwick_API::Platform
