#include <Platform/Application/UserFolders.hpp>

#include <Platform/Application/HomeFolder.hpp>

#include <cstdlib>

namespace Tarnwick_API::Platform {

namespace {

/// The XDG base directory that the variable names, or else `underHome` in the user's home.
std::filesystem::path userFolder(const char* variable, const std::filesystem::path& underHome) {
    if (auto folder = absolutePathFrom(std::getenv(variable)); !folder.empty()) {
        return folder;
    }
    auto home = homeFolder();
    return home.empty() ? home : home / underHome;
}

}  // namespace

std::filesystem::path userDataFolder() {
    return userFolder("XDG_DATA_HOME", std::filesystem::path{".local"} / "share");
}

std::filesystem::path userCacheFolder() {
    return userFolder("XDG_CACHE_HOME", ".cache");
}

}  // namespace Tarnwick_API::Platform
