#pragma once

#include <CLI/CLI.hpp>

namespace TarnwickClient {

/// A number without fraction, for whoever looks for a number to convert.
[[nodiscard]] CLI::Validator wholeNumber();

[[nodiscard]] CLI::Validator numberBetween(double least, double most);

/// A path in which "~" stands for the user's home folder, as in a shell.
[[nodiscard]] CLI::Validator userPath();

}  // namespace TarnwickClient
