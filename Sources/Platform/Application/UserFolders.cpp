#include <Platform/Application/UserFolders.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

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

bool isFileName(std::string_view text) {
    return !text.empty() && text != "." && text != ".." && text.find_first_of(std::string_view{"/\0", 2}) == text.npos;
}

}  // namespace

std::filesystem::path userFolder(const char* variable, const std::filesystem::path& underHome) {
    if (auto folder = absolutePathFrom(std::getenv(variable)); !folder.empty()) {
        return folder;
    }
    auto home = homeFolder();
    return home.empty() ? home : home / underHome;
}

std::string applicationFolderName() {
    if (auto identifier = Bundle::main()->text("CFBundleIdentifier"); identifier && isFileName(*identifier)) {
        return *std::move(identifier);
    }
#ifdef __GLIBC__
    return program_invocation_short_name;
#else
    return ::getprogname();
#endif
}

}  // namespace Tarnwick_API::Platform
