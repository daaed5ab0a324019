#pragma once

#include "CommandLine/ManualPage.hpp"

namespace TarnwickClient {

/// What the manual page says beyond the help.
[[nodiscard]] CommandLine::Manual clientManual();

}  // namespace TarnwickClient
