#include "PasswordMask.hpp"

#include <Platform/Text/AsciiCharacters.hpp>

#include <algorithm>
#include <cstddef>

namespace Tarnwick_API {

namespace {

constexpr std::string_view opener = R"(password\":\")";
constexpr std::string_view closer = R"(\",\")";
constexpr std::string_view mask = "OBFUSCATED";

std::size_t findOpener(std::string_view line) noexcept {
    const auto* const found =
        std::search(line.begin(), line.end(), opener.begin(), opener.end(),
                    [](char actual, char expected) { return Platform::asciiLower(actual) == expected; });
    return found == line.end() ? std::string_view::npos : static_cast<std::size_t>(found - line.begin());
}

void appendMasked(std::string& result, std::string_view line) {
    if (const auto start = findOpener(line); start != std::string_view::npos) {
        const auto valueStart = start + opener.size();
        if (const auto valueEnd = line.rfind(closer); valueEnd != std::string_view::npos && valueEnd >= valueStart) {
            result.append(line.substr(0, valueStart)).append(mask).append(line.substr(valueEnd));
            return;
        }
    }
    result.append(line);
}

}  // namespace

std::string obfuscateLoginString(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (true) {
        const auto lineEnd = text.find_first_of("\n\v\f\r");
        appendMasked(result, text.substr(0, lineEnd));
        if (lineEnd == std::string_view::npos) {
            return result;
        }
        result += text[lineEnd];
        text.remove_prefix(lineEnd + 1);
    }
}

}  // namespace Tarnwick_API
