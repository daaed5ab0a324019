#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace TarnwickClient {

/// The columns of the terminal behind `descriptor`; none when there is no terminal.
[[nodiscard]] std::optional<std::size_t> terminalWidth(int descriptor);

[[nodiscard]] bool isTerminal(int descriptor);

/// Asks on the process's terminal, without showing what is typed when `hidden`. The terminal is as it was afterwards,
/// also when a signal ends the program meanwhile. Throws `Failure` when there is no terminal or no line comes.
[[nodiscard]] std::string promptOnTerminal(const std::string& question, bool hidden);

}  // namespace TarnwickClient
