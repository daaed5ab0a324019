#pragma once

#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

namespace TarnwickClient {

/// A number without fraction, for whoever looks for a number to convert.
[[nodiscard]] CLI::Validator wholeNumber();

[[nodiscard]] CLI::Validator numberBetween(double least, double most);

/// A path in which "~" stands for the user's home folder, as in a shell.
[[nodiscard]] CLI::Validator userPath();

/// One of a few words, each of which stands for a value.
template <typename Value>
[[nodiscard]] CLI::Validator choice(std::vector<std::pair<std::string, Value>> choices) {
    return CLI::Validator{[choices = std::move(choices)](std::string& text) {
                              std::string known;
                              for (const auto& [word, value] : choices) {
                                  if (text == word) {
                                      // The parser converts numbers to enumerations.
                                      text = std::to_string(static_cast<int>(value));
                                      return std::string{};
                                  }
                                  known += (known.empty() ? "" : ", ") + word;
                              }
                              return "\"" + text + "\" is none of " + known;
                          },
                          ""};
}

}  // namespace TarnwickClient
