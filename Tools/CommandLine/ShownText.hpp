#pragma once

#include "CommandLine/ManualPage.hpp"

#include <cstddef>
#include <optional>
#include <string>

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace CommandLine {

/// Adds the options by which `program` prints its version, its completion scripts and its manual page.
void addDocumentationOptions(CLI::App& program, const Manual& manual);

/// Adds the command that shows the help of the commands beside it.
void addHelpCommand(CLI::App& program);

/// What the user wants to read in place of a run: help for `width` columns, the version, or the result of one of the
/// above. None when `error`, with which the parsing ended, says that the command line is wrong.
[[nodiscard]] std::optional<std::string> shownText(const CLI::App& program, const CLI::ParseError& error,
                                                   std::size_t width);

}  // namespace CommandLine
