#include <Platform/Http/HeaderFields.hpp>

#include <Platform/Application/AsciiCharacters.hpp>

#include <algorithm>

namespace Platform {

namespace {

bool isTokenCharacter(char character) noexcept {
    return isAsciiLetter(character) || isAsciiDigit(character) ||
           std::string_view{"!#$%&'*+-.^_`|~"}.find(character) != std::string_view::npos;
}

}  // namespace

bool isSameHeaderName(std::string_view left, std::string_view right) noexcept {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return asciiLower(a) == asciiLower(b); });
}

const std::string* findHeader(const HttpHeaders& headers, std::string_view name) noexcept {
    const auto header = std::find_if(headers.begin(), headers.end(),
                                     [&](const auto& each) { return isSameHeaderName(each.first, name); });
    return header == headers.end() ? nullptr : &header->second;
}

bool hasHeader(const HttpHeaders& headers, std::string_view name) noexcept {
    return findHeader(headers, name) != nullptr;
}

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t\r\n";
    const auto begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::optional<std::string> headerFault(const HttpHeaders& headers) {
    for (const auto& [name, value] : headers) {
        if (name.empty() || !std::all_of(name.begin(), name.end(), isTokenCharacter)) {
            return "a header name is empty or holds a character that names can't have";
        }
        if (value.find_first_of(std::string_view{"\r\n\0", 3}) != std::string::npos) {
            return "the value of header " + name + " holds CR, LF or NUL";
        }
    }
    return std::nullopt;
}

}  // namespace Platform
