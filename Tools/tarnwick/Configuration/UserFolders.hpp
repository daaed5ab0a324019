#pragma once

#include <filesystem>

namespace TarnwickClient {

/// `$XDG_CONFIG_HOME/tarnwick` or `~/.config/tarnwick`; empty when the environment names neither.
[[nodiscard]] std::filesystem::path configurationFolder();

/// `$XDG_STATE_HOME/tarnwick` or `~/.local/state/tarnwick`; empty when the environment names neither.
[[nodiscard]] std::filesystem::path stateFolder();

}  // namespace TarnwickClient
