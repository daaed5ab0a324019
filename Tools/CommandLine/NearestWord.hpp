#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CommandLine {

/// The one of `words` that `word` was most likely meant to be; none when no one is close.
[[nodiscard]] std::optional<std::string> nearestWord(const std::string& word, const std::vector<std::string>& words);

/// The same as a question to put behind a message; empty when no one is close.
[[nodiscard]] std::string suggestion(const std::string& word, const std::vector<std::string>& words);

}  // namespace CommandLine
