#include <Platform/Text/AsciiText.hpp>

#include <Platform/Text/AsciiCharacters.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

bool equalsIgnoringAsciiCase(std::string_view left, std::string_view right) noexcept {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return asciiLower(a) == asciiLower(b); });
}

std::string asciiLowerCased(std::string_view text) {
    std::string result{text};
    std::ranges::transform(result, result.begin(), asciiLower);
    return result;
}

std::string asciiUpperCased(std::string_view text) {
    std::string result{text};
    std::ranges::transform(result, result.begin(), asciiUpper);
    return result;
}

std::string_view trimmed(std::string_view text) noexcept {
    constexpr std::string_view blanks = " \t\r\n";
    const auto begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

}  // namespace Tarnwick_API::Platform
