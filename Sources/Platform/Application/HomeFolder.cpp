#include <Platform/Application/HomeFolder.hpp>

#include <array>
#include <cstdlib>

#include <pwd.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

std::filesystem::path absolutePathFrom(const char* text) {
    std::filesystem::path path{text == nullptr ? "" : text};
    return path.is_absolute() ? path : std::filesystem::path{};
}

std::filesystem::path homeFolder() {
    if (auto home = absolutePathFrom(std::getenv("HOME")); !home.empty()) {
        return home;
    }
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    return found == nullptr ? std::filesystem::path{} : absolutePathFrom(found->pw_dir);
}

}  // namespace Tarnwick_API::Platform
