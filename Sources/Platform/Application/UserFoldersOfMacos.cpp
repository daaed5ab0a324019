#include <Platform/Application/UserFolders.hpp>

#include <Platform/Application/HomeFolder.hpp>

namespace Tarnwick_API::Platform {

namespace {

// In the sandbox the home is the application's container.
std::filesystem::path libraryFolder(const char* name) {
    auto home = homeFolder();
    return home.empty() ? home : home / "Library" / name;
}

}  // namespace

std::filesystem::path userDataFolder() {
    return libraryFolder("Application Support");
}

std::filesystem::path userCacheFolder() {
    return libraryFolder("Caches");
}

}  // namespace Tarnwick_API::Platform
