#pragma once

#include "CommandLine/ManualPage.hpp"

namespace TarnwickService {

/// What help and manual page both say besides the options.
inline constexpr const char* helpNotes = R"(Examples:
  tarnwick-service --account "ada@example.org:correct horse"
  tarnwick-service --port 8443 --control-port 8444 --ca-file ca.pem
  curl --data '{"count": 2, "cut": "before_answer"}' http://127.0.0.1:8444/faults

Exit status:
  0  ended by SIGINT or SIGTERM
  1  something on this computer failed, such as a port that is taken
  2  wrong use
)";

/// What the manual page says beyond the help.
[[nodiscard]] CommandLine::Manual serviceManual();

}  // namespace TarnwickService
