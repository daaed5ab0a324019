#include "Output/DisplayText.hpp"

#include <cwchar>
#include <optional>

namespace TarnwickClient {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr std::string_view ellipsis = "\xE2\x80\xA6";

struct Character {
    char32_t codePoint;
    std::size_t length;
};

/// The character at the start of `text`, which is not empty; none when it is no well-formed UTF-8.
std::optional<Character> firstCharacter(std::string_view text) {
    const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const auto lead = byte(0);
    if (lead < 0x80) {
        return Character{lead, 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < length) {
        return std::nullopt;
    }
    char32_t codePoint = lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        if ((byte(index) & 0xC0U) != 0x80) {
            return std::nullopt;
        }
        codePoint = (codePoint << 6U) | (byte(index) & 0x3FU);
    }
    const char32_t smallest = length == 4 ? 0x10000 : length == 3 ? 0x800 : 0x80;
    if (codePoint < smallest || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        return std::nullopt;
    }
    return Character{codePoint, length};
}

bool isControl(char32_t codePoint) {
    const auto isDirection =
        (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
    return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0) || isDirection;
}

std::size_t columns(char32_t codePoint) {
    const auto width = ::wcwidth(static_cast<wchar_t>(codePoint));
    return width < 0 ? 1 : static_cast<std::size_t>(width);
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const auto character = firstCharacter(text);
        const auto length = character ? character->length : 1;
        if (character && (character->codePoint == '\n' || character->codePoint == '\t')) {
            result += ' ';
        } else if (!character || isControl(character->codePoint)) {
            result += replacement;
        } else {
            result += text.substr(0, length);
        }
        text.remove_prefix(length);
    }
    return result;
}

std::size_t displayWidth(std::string_view text) {
    std::size_t width = 0;
    while (!text.empty()) {
        const auto character = firstCharacter(text);
        width += character ? columns(character->codePoint) : 1;
        text.remove_prefix(character ? character->length : 1);
    }
    return width;
}

std::string shortened(const std::string& text, std::size_t width) {
    if (displayWidth(text) <= width) {
        return text;
    }
    std::string result;
    std::size_t used = 0;
    for (std::string_view rest{text}; !rest.empty();) {
        const auto character = firstCharacter(rest);
        const auto length = character ? character->length : 1;
        const auto next = character ? columns(character->codePoint) : 1;
        if (used + next + 1 > width) {
            break;
        }
        result += rest.substr(0, length);
        used += next;
        rest.remove_prefix(length);
    }
    return width == 0 ? std::string{} : result + std::string{ellipsis};
}

}  // namespace TarnwickClient
