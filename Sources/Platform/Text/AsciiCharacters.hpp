#pragma once

namespace Tarnwick_API::Platform {

// The standard library's classification follows the process's C locale; names, codes and URLs must not.

constexpr bool isAsciiUpper(char character) noexcept {
    return character >= 'A' && character <= 'Z';
}

constexpr bool isAsciiLetter(char character) noexcept {
    return isAsciiUpper(character) || (character >= 'a' && character <= 'z');
}

constexpr bool isAsciiDigit(char character) noexcept {
    return character >= '0' && character <= '9';
}

constexpr bool isAsciiAlphanumeric(char character) noexcept {
    return isAsciiLetter(character) || isAsciiDigit(character);
}

constexpr bool isAsciiHexDigit(char character) noexcept {
    return isAsciiDigit(character) || (character >= 'A' && character <= 'F') || (character >= 'a' && character <= 'f');
}

constexpr char asciiLower(char character) noexcept {
    return isAsciiUpper(character) ? static_cast<char>(character - 'A' + 'a') : character;
}

constexpr char asciiUpper(char character) noexcept {
    return isAsciiLetter(character) && !isAsciiUpper(character) ? static_cast<char>(character - 'a' + 'A') : character;
}

}  // namespace Tarnwick_API::Platform
