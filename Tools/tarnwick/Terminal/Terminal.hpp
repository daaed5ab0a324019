#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace TarnwickClient {

/// The columns of the terminal behind `descriptor`; none when there is no terminal.
[[nodiscard]] std::optional<std::size_t> terminalWidth(int descriptor);

[[nodiscard]] bool isTerminal(int descriptor);

/// Asks on the process's terminal, without showing what is typed when `hidden`. The terminal is as it was afterwards,
/// also while a signal stops the program and when one ends it; a program that goes on asks again. Empty when nothing is
/// entered. Throws `Failure` when there is no terminal.
[[nodiscard]] std::string promptOnTerminal(const std::string& question, bool hidden);

}  // namespace TarnwickClient
