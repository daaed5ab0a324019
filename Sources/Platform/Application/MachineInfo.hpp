#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The PRETTY_HOSTNAME of a machine-info file's text: `NAME=value` lines with the shell's quoting, of which the last
/// assignment counts. None when it is not assigned; an assigned empty text is given as such.
[[nodiscard]] std::optional<std::string> prettyHostName(std::string_view machineInfo);

}  // namespace Tarnwick_API::Platform
