#include "PasswordMask.hpp"

#include <Platform/Text/AsciiCharacters.hpp>
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

/// Finds the openers of a text one after another, by the rarest of their letters.
class OpenerSearch {
public:
    explicit OpenerSearch(std::string_view text) noexcept
        : text_{text}, lower_{text.find(letter)}, upper_{text.find(Platform::asciiUpper(letter))} {}

    /// Where the next one begins, not before `begin`, which never goes back; npos when there is none.
    [[nodiscard]] std::size_t next(std::size_t begin) noexcept {
        while (true) {
            const auto at = std::min(lower_, upper_);
            if (at == std::string_view::npos) {
                return at;
            }
            auto& taken = lower_ < upper_ ? lower_ : upper_;
            taken = text_.find(text_[at], at + 1);
            const auto start = at - letterInOpener;
            if (at >= begin + letterInOpener &&
                Platform::equalsIgnoringAsciiCase(text_.substr(start, opener.size()), opener)) {
                return start;
            }
        }
    }

private:
    static constexpr char letter = 'w';
    static constexpr auto letterInOpener = opener.find(letter);

    std::string_view text_;
    std::size_t lower_;
    std::size_t upper_;
};

}  // namespace

std::string obfuscateLoginString(std::string rendering) {
    const std::string_view text{rendering};
    OpenerSearch openers{text};
    auto start = openers.next(0);
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
        start = openers.next(lineEnd);
    }
    return result.append(text.substr(taken));
}

}  // namespace Tarnwick_API
