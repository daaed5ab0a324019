#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Tarnwick_API::Platform {

/// Which of the 256 characters belong to it; asked at the cost of one look, where a search in a text would be made for
/// each character.
class CharacterSet {
public:
    constexpr explicit CharacterSet(std::string_view members) noexcept { add(members); }

    [[nodiscard]] static constexpr CharacterSet alphanumericAnd(std::string_view others) noexcept {
        CharacterSet set{"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"};
        set.add(others);
        return set;
    }

    [[nodiscard]] constexpr bool contains(char character) const noexcept {
        return has_[static_cast<unsigned char>(character)];
    }

    [[nodiscard]] constexpr bool containsAll(std::string_view text) const noexcept {
        for (const char character : text) {
            if (!contains(character)) {
                return false;
            }
        }
        return true;
    }

    /// Where the first member stands in `text`, not before `begin`; the text's size when there is none.
    [[nodiscard]] constexpr std::size_t firstIn(std::string_view text, std::size_t begin = 0) const noexcept {
        while (begin < text.size() && !contains(text[begin])) {
            ++begin;
        }
        return begin < text.size() ? begin : text.size();
    }

private:
    constexpr void add(std::string_view members) noexcept {
        for (const char member : members) {
            has_[static_cast<unsigned char>(member)] = true;
        }
    }

    std::array<bool, 256> has_{};
};

}  // namespace Tarnwick_API::Platform
