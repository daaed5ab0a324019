#include <Platform/Json/LongIntegers.hpp>

#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <Platform/Text/AsciiCharacters.hpp>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>

namespace Tarnwick_API::Platform {

namespace {

template <typename Integer>
bool overflows(std::string_view digits) {
    Integer integer{};
    return std::from_chars(digits.data(), digits.data() + digits.size(), integer).ec == std::errc::result_out_of_range;
}

bool isLongInteger(std::string_view number) {
    const bool negative = number.starts_with('-');
    const std::string_view digits = number.substr(negative ? 1 : 0);
    if (!std::ranges::all_of(digits, isAsciiDigit)) {
        return false;
    }
    return negative ? overflows<std::int64_t>(number) : overflows<std::uint64_t>(number);
}

/// Where the string that begins at `start` ends: behind its closing quote, or at the end of the text.
std::size_t endOfString(std::string_view json, std::size_t start) {
    std::size_t position = start + 1;
    while (position < json.size() && json[position] != '"') {
        position += json[position] == '\\' ? 2 : 1;
    }
    return std::min(position + 1, json.size());
}

}  // namespace

Bytes withLongIntegersAsReals(std::string_view json) {
    constexpr std::string_view beginsToken = "\"-0123456789";
    constexpr std::string_view numberCharacters = "+-.0123456789Ee";
    Bytes rewritten;
    rewritten.reserve(json.size() + json.size() / 8 + JsonDocument::padding);
    for (std::size_t position = 0; position < json.size();) {
        std::size_t end = 0;
        bool isLong = false;
        if (json[position] == '"') {
            end = endOfString(json, position);
        } else if (beginsToken.find(json[position]) != std::string_view::npos) {
            end = std::min(json.find_first_not_of(numberCharacters, position), json.size());
            isLong = isLongInteger(json.substr(position, end - position));
        } else {
            end = std::min(json.find_first_of(beginsToken, position), json.size());
        }
        rewritten.append(json.substr(position, end - position));
        rewritten.append(isLong ? "e0" : "");
        position = end;
    }
    rewritten.reserve(rewritten.size() + JsonDocument::padding);
    return rewritten;
}

}  // namespace Tarnwick_API::Platform
