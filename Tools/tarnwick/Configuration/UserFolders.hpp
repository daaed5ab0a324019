#pragma once

#include <filesystem>
#include <string>

namespace TarnwickClient {

/// `$XDG_CONFIG_HOME/tarnwick` or `~/.config/tarnwick`; empty when the environment names neither.
[[nodiscard]] std::filesystem::path configurationFolder();

/// `$XDG_STATE_HOME/tarnwick` or `~/.local/state/tarnwick`; empty when the environment names neither.
[[nodiscard]] std::filesystem::path stateFolder();

/// `path` with the home folder in place of a leading "~"; as it is when there is none, or when the environment names no
/// home.
[[nodiscard]] std::string withHomeFolder(const std::string& path);

}  // namespace TarnwickClient
