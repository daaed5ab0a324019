#include "Configuration/UserFolders.hpp"

#include <cstdlib>

namespace TarnwickClient {

namespace {

std::filesystem::path userFolder(const char* variable, const char* belowHome) {
    // A relative path there is invalid and to be ignored, by the XDG rules for base directories.
    if (const auto* folder = std::getenv(variable); folder != nullptr && *folder == '/') {
        return std::filesystem::path{folder} / "tarnwick";
    }
    if (const auto* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return std::filesystem::path{home} / belowHome / "tarnwick";
    }
    return {};
}

}  // namespace

std::filesystem::path configurationFolder() {
    return userFolder("XDG_CONFIG_HOME", ".config");
}

std::string withHomeFolder(const std::string& path) {
    const auto* home = std::getenv("HOME");
    const auto isBelowHome = path == "~" || path.starts_with("~/");
    return isBelowHome && home != nullptr && *home != '\0' ? home + path.substr(1) : path;
}

std::filesystem::path stateFolder() {
    return userFolder("XDG_STATE_HOME", ".local/state");
}

}  // namespace TarnwickClient
