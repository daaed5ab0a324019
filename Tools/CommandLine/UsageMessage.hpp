#pragma once

#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace CommandLine {

/// What is wrong with a command line that `app` refused with `error`: names the word that is not known, and the nearest
/// one that is.
[[nodiscard]] std::string usageMessage(const CLI::App& app, const CLI::ParseError& error);

/// Where to read more about the command that the parsed words name.
[[nodiscard]] std::string helpHint(const CLI::App& program);

/// What is wrong with `word`, which `command` knows neither as a command nor as an option.
[[nodiscard]] std::string unknownWord(const CLI::App& command, const std::string& word);

}  // namespace CommandLine
