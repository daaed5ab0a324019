#include <Tarnwick_API/Platform/Application/Uuid.hpp>

#include <Platform/Text/AsciiCharacters.hpp>

#include <algorithm>
#include <cstddef>
#include <random>

namespace Tarnwick_API::Platform {

namespace {

constexpr std::size_t textLength = 36;

bool isHyphenPosition(std::size_t position) noexcept {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

std::optional<std::uint8_t> hexDigit(char character) noexcept {
    if (!isAsciiHexDigit(character)) {
        return std::nullopt;
    }
    return static_cast<std::uint8_t>(isAsciiDigit(character) ? character - '0' : asciiUpper(character) - 'A' + 10);
}

}  // namespace

Uuid Uuid::random() {
    std::random_device device;
    std::array<std::uint8_t, 16> bytes{};
    std::generate(bytes.begin(), bytes.end(), [&device] { return static_cast<std::uint8_t>(device()); });
    bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0FU) | 0x40U);
    bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3FU) | 0x80U);
    return Uuid{bytes};
}

std::optional<Uuid> Uuid::fromString(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    std::array<std::uint8_t, 16> bytes{};
    std::size_t digits = 0;
    for (std::size_t position = 0; position < text.size(); ++position) {
        if (isHyphenPosition(position)) {
            if (text[position] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const auto digit = hexDigit(text[position]);
        if (!digit) {
            return std::nullopt;
        }
        auto& byte = bytes.at(digits / 2);
        byte = static_cast<std::uint8_t>(byte << 4U | *digit);
        ++digits;
    }
    return Uuid{bytes};
}

std::string Uuid::uuidString() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(textLength);
    for (const auto byte : bytes_) {
        if (isHyphenPosition(text.size())) {
            text += '-';
        }
        text += digits[byte >> 4U];
        text += digits[byte & 0x0FU];
    }
    return text;
}

// Not defaulted: libc++ can't compare arrays this way before version 17.
}  // namespace Tarnwick_API::Platform
