#include <Platform/Http/Requests/HeaderFields.hpp>

#include <Platform/Text/AsciiText.hpp>
#include <Platform/Text/CharacterSet.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

namespace {

constexpr auto tokenCharacters = CharacterSet::alphanumericAnd("!#$%&'*+-.^_`|~");
constexpr CharacterSet endsOfField{{"\r\n\0", 3}};

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
        if (name.empty() || !tokenCharacters.containsAll(name)) {
            return "a header name is empty or holds a character that names can't have";
        }
        if (endsOfField.firstIn(value) != value.size()) {
            return "the value of header " + name + " holds CR, LF or NUL";
        }
    }
    return std::nullopt;
}

}  // namespace Tarnwick_API::Platform
