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

}  // namespace CommandLine
