#include <Platform/Http/Requests/HeaderFields.hpp>

#include <Platform/Text/AsciiText.hpp>
#include <Platform/Text/CharacterSet.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

namespace {

constexpr auto tokenCharacters = CharacterSet::alphanumericAnd("!#$%&'*+-.^_`|~");
constexpr std::string_view endsOfField{"\r\n\0", 3};

}  // namespace

const std::string* findHeader(const HttpHeaders& headers, std::string_view name) noexcept {
    const auto header = std::find_if(headers.begin(), headers.end(),
                                     [&](const auto& each) { return equalsIgnoringAsciiCase(each.first, name); });
    return header == headers.end() ? nullptr : &header->second;
}

bool hasHeader(const HttpHeaders& headers, std::string_view name) noexcept {
    return findHeader(headers, name) != nullptr;
}

std::optional<std::string> headerFault(std::string_view name, std::string_view value) {
    if (name.empty() || !tokenCharacters.containsAll(name)) {
        return "a header name is empty or holds a character that names can't have";
    }
    // One fast search for each: a value is long, and hardly ever holds one.
    if (std::ranges::any_of(endsOfField, [value](char end) { return value.find(end) != std::string_view::npos; })) {
        return std::string{"the value of header "}.append(name).append(" holds CR, LF or NUL");
    }
    return std::nullopt;
}

std::optional<std::string> headerFault(const HttpHeaders& headers) {
    for (const auto& [name, value] : headers) {
        if (auto fault = headerFault(name, value)) {
            return fault;
        }
    }
    return std::nullopt;
}

}  // namespace Tarnwick_API::Platform
