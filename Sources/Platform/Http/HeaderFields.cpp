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

bool hasHeader(const HttpHeaders& headers, std::string_view name) noexcept {
    return std::any_of(headers.begin(), headers.end(),
                       [&](const auto& header) { return isSameHeaderName(header.first, name); });
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
