#pragma once

#include "CommandLine/ManualPage.hpp"

#include <string>

namespace TarnwickService {

/// What help and manual page both say besides the options: orders, faults, examples, exit statuses.
[[nodiscard]] std::string helpNotes();

/// What the manual page says beyond the help.
[[nodiscard]] CommandLine::Manual serviceManual();

}  // namespace TarnwickService
