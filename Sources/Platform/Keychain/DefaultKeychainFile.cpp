#include <Tarnwick_API/Platform/Bundle.hpp>
#include <Tarnwick_API/Platform/KeychainStore.hpp>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string_view>

#include <pwd.h>
#include <unistd.h>

namespace Platform {

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

std::filesystem::path dataFolder() {
    // The XDG base directories: a relative path in the variable counts as none.
    if (auto folder = absolutePathFrom(std::getenv("XDG_DATA_HOME")); !folder.empty()) {
        return folder;
    }
    auto home = homeFolder();
    return home.empty() ? home : home / ".local" / "share";
}

bool isFileName(std::string_view text) {
    return !text.empty() && text != "." && text != ".." && text.find_first_of(std::string_view{"/\0", 2}) == text.npos;
}

std::string applicationName() {
    if (auto identifier = Bundle::main()->text("CFBundleIdentifier"); identifier && isFileName(*identifier)) {
        return *std::move(identifier);
    }
#ifdef __GLIBC__
    return program_invocation_short_name;
#else
    return ::getprogname();
#endif
}

}  // namespace

std::string defaultKeychainFile() {
    const auto folder = dataFolder();
    return folder.empty() ? std::string{} : (folder / applicationName() / "keychain.sqlite").string();
}

}  // namespace Platform
