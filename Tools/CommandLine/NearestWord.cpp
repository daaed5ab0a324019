#include "CommandLine/NearestWord.hpp"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace CommandLine {

namespace {

/// How many characters must be put in, left out, changed or exchanged with their neighbour to make `right` of `left`.
std::size_t editDistance(const std::string& left, const std::string& right) {
    std::vector<std::size_t> beforeLast;
    std::vector<std::size_t> last(right.size() + 1);
    std::iota(last.begin(), last.end(), std::size_t{0});
    for (std::size_t row = 1; row <= left.size(); ++row) {
        std::vector<std::size_t> current{row};
        for (std::size_t column = 1; column <= right.size(); ++column) {
            const auto isSame = left[row - 1] == right[column - 1];
            auto least = std::min({last[column] + 1, current.back() + 1, last[column - 1] + (isSame ? 0U : 1U)});
            if (row > 1 && column > 1 && left[row - 1] == right[column - 2] && left[row - 2] == right[column - 1]) {
                least = std::min(least, beforeLast[column - 2] + 1);
            }
            current.push_back(least);
        }
        beforeLast = std::exchange(last, std::move(current));
    }
    return last.back();
}

}  // namespace

std::optional<std::string> nearestWord(const std::string& word, const std::vector<std::string>& words) {
    constexpr std::size_t lettersPerMistake = 3;
    std::optional<std::string> nearest;
    auto least = std::max<std::size_t>(1, word.size() / lettersPerMistake) + 1;
    for (const auto& candidate : words) {
        const auto isBeginning = word.size() >= lettersPerMistake && candidate.starts_with(word);
        const auto distance = isBeginning ? 1 : editDistance(word, candidate);
        if (distance < least) {
            least = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string suggestion(const std::string& word, const std::vector<std::string>& words) {
    const auto nearest = nearestWord(word, words);
    return nearest ? "; did you mean " + *nearest + "?" : std::string{};
}

}  // namespace CommandLine
