#include "PasswordMask.hpp"

#include <Platform/Text/AsciiText.hpp>
#include <Platform/Text/CharacterSet.hpp>

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace Tarnwick_API {

namespace {

constexpr std::string_view opener = R"(password\":\")";
constexpr std::string_view closer = R"(\",\")";
constexpr std::string_view mask = "OBFUSCATED";

constexpr Platform::CharacterSet lineEnds{"\n\v\f\r"};

/// Whether an opener may begin at one of the first `count` places of `text`, by two letters in it that seldom stand
/// together. Without a way out of its loop, so that compilers look at many places in one step.
bool mayOpen(std::string_view text, std::size_t count) noexcept {
    constexpr auto pair = opener.find("sw");
    constexpr unsigned char caseBit = 0x20;
    unsigned char found = 0;
    for (std::size_t place = pair; place < pair + count; ++place) {
        const auto isFirst = static_cast<unsigned char>((text[place] | caseBit) == opener[pair]);
        const auto isSecond = static_cast<unsigned char>((text[place + 1] | caseBit) == opener[pair + 1]);
        found |= isFirst & isSecond;
    }
    return found != 0;
}

/// Where the next opener begins, not before `begin`; npos when there is none.
std::size_t findOpener(std::string_view text, std::size_t begin) noexcept {
    constexpr std::size_t blockSize = 64;
    while (begin + opener.size() <= text.size()) {
        const auto end = begin + std::min(blockSize, text.size() - opener.size() + 1 - begin);
        if (mayOpen(text.substr(begin), end - begin)) {
            for (auto at = begin; at < end; ++at) {
                if (Platform::equalsIgnoringAsciiCase(text.substr(at, opener.size()), opener)) {
                    return at;
                }
            }
        }
        begin = end;
    }
    return std::string_view::npos;
}

}  // namespace

std::string obfuscateLoginString(std::string rendering) {
    const std::string_view text{rendering};
    auto start = findOpener(text, 0);
    if (start == std::string_view::npos) {
        return rendering;
    }
    std::string result;
    result.reserve(text.size());
    std::size_t taken = 0;
    while (start != std::string_view::npos) {
        const auto valueStart = start + opener.size();
        const auto lineEnd = lineEnds.firstIn(text, valueStart);
        const auto valueSize = text.substr(valueStart, lineEnd - valueStart).rfind(closer);
        if (valueSize != std::string_view::npos) {
            result.append(text.substr(taken, valueStart - taken)).append(mask);
            taken = valueStart + valueSize;
        }
        start = findOpener(text, lineEnd);
    }
    return result.append(text.substr(taken));
}

}  // namespace Tarnwick_API
