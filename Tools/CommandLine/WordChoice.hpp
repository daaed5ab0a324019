#pragma once

#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

namespace CommandLine {

/// How a validator describes a closed set of words: "{general,downloading}".
[[nodiscard]] std::string closedSet(const std::vector<std::string>& words);

/// What is wrong with a word that is none of `words`.
[[nodiscard]] std::string noneOf(const std::string& word, const std::vector<std::string>& words);

/// One of a few words, each of which stands for a value.
template <typename Value>
[[nodiscard]] CLI::Validator choice(std::vector<std::pair<std::string, Value>> choices) {
    std::vector<std::string> words;
    for (const auto& choice : choices) {
        words.push_back(choice.first);
    }
    auto description = closedSet(words);
    return CLI::Validator{[choices = std::move(choices), words = std::move(words)](std::string& text) {
                              for (const auto& [word, value] : choices) {
                                  if (text == word) {
                                      // The parser converts numbers to enumerations.
                                      text = std::to_string(static_cast<int>(value));
                                      return std::string{};
                                  }
                              }
                              return noneOf(text, words);
                          },
                          std::move(description)};
}

}  // namespace CommandLine
