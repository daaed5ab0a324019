#include <Platform/Keychain/File/DamagedKeychainFile.hpp>

#include <Tarnwick_API/Platform/Application/WallClock.hpp>

#include <Platform/Keychain/File/KeychainFile.hpp>

#include <algorithm>
#include <array>
#include <ctime>
#include <string>
#include <system_error>

namespace Tarnwick_API::Platform {

namespace {

namespace fs = std::filesystem;

constexpr const char* mark = ".damaged-";
constexpr const char* journal = "-journal";

/// Sorts by time as it stands.
std::string timeText() {
    const auto seconds = std::chrono::system_clock::to_time_t(WallClock::now());
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts)};
}

bool isTaken(const fs::path& path) {
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type() != fs::file_type::not_found;
}

fs::path with(const fs::path& path, const std::string& suffix) {
    auto longer = path;
    longer += suffix;
    return longer;
}

fs::path freeName(const fs::path& file) {
    const auto name = with(file, mark + timeText());
    auto free = name;
    for (int number = 2; isTaken(free) || isTaken(with(free, journal)); ++number) {
        free = with(with(name, "-"), std::to_string(number));
    }
    return free;
}

}  // namespace

SetAsideFile setAsideDamagedFile(const fs::path& file) {
    const auto aside = freeName(file);
    std::error_code error;
    // First, as SQLite would delete it with the file gone, or write it back into the next one.
    fs::rename(with(file, journal), with(aside, journal), error);
    if (!error || error == std::errc::no_such_file_or_directory) {
        fs::rename(file, aside, error);
    }
    return error ? SetAsideFile{statusOfSystemError(error.value(), KeychainStatus::notAvailable)}
                 : SetAsideFile{KeychainStatus::success, aside};
}

fs::path latestDamagedFile(const fs::path& file) {
    const auto beginning = file.filename().string() + mark;
    fs::path latest;
    std::error_code error;
    for (fs::directory_iterator entry{file.parent_path(), error}; !error && entry != fs::directory_iterator{};
         entry.increment(error)) {
        const auto name = entry->path().filename().string();
        if (name.starts_with(beginning) && !name.ends_with(journal)) {
            latest = std::max(latest, entry->path());
        }
    }
    return latest;
}

}  // namespace Tarnwick_API::Platform
