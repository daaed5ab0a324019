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
    const auto isBlank = [](char character) {
        return character == ' ' || character == '\t' || character == '\r' || character == '\n';
    };
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace Tarnwick_API::Platform
