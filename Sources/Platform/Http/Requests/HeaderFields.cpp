#include <Platform/Http/Requests/HeaderFields.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

namespace {

bool isTokenCharacter(char character) noexcept {
    return isAsciiLetter(character) || isAsciiDigit(character) ||
           std::string_view{"!#$%&'*+-.^_`|~"}.find(character) != std::string_view::npos;
}

}  // namespace

const std::string* findHeader(const HttpHeaders& headers, std::string_view name) noexcept {
    const auto header = std::find_if(headers.begin(), headers.end(),
                                     [&](const auto& each) { return equalsIgnoringAsciiCase(each.first, name); });
    return header == headers.end() ? nullptr : &header->second;
}

bool hasHeader(const HttpHeaders& headers, std::string_view name) noexcept {
    return findHeader(headers, name) != nullptr;
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

}  // namespace Tarnwick_API::Platform
