#include <Platform/Application/PrivateFile.hpp>

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

constexpr mode_t rightsOfOthers = S_IRWXG | S_IRWXO;

/// Zero or the error number. Unlike std::filesystem's, no folder is open to others for even a moment.
int makeFolders(const std::filesystem::path& folder) {
    if (::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST) {
        return 0;
    }
    if (errno != ENOENT || !folder.has_relative_path()) {
        return errno;
    }
    if (const int error = makeFolders(folder.parent_path()); error != 0) {
        return error;
    }
    return ::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST ? 0 : errno;
}

}  // namespace

FoundFile findPrivateFile(const std::filesystem::path& path) {
    auto found = findOwnFile(path);
    if (found.error == 0) {
        closeToOthers(found.path);
    }
    return found;
}

void closeToOthers(const std::filesystem::path& path) {
    struct stat found {};
    if (::lstat(path.c_str(), &found) == 0 && S_ISREG(found.st_mode) && (found.st_mode & rightsOfOthers) != 0) {
        static_cast<void>(::chmod(path.c_str(), found.st_mode & S_IRWXU));
    }
}

FoundFile findOwnFile(const std::filesystem::path& path) {
    std::error_code error;
    // SQLite refuses a symbolic link anywhere in a path, but only the one at the file's own place is suspicious: homes
    // are often behind one.
    const auto folder = std::filesystem::canonical(path.parent_path(), error);
    if (error) {
        return {error.value(), {}};
    }
    const auto file = folder / path.filename();
    struct stat found {};
    if (::lstat(file.c_str(), &found) != 0) {
        return {errno, {}};
    }
    if (!S_ISREG(found.st_mode)) {
        return {ENOTSUP, {}};
    }
    if (found.st_uid != ::geteuid() && ::geteuid() != 0) {
        return {EACCES, {}};
    }
    return {0, file.string()};
}

int createPrivateFile(const std::filesystem::path& path) {
    if (const int error = makeFolders(path.parent_path()); error != 0) {
        return error;
    }
    const int file = ::open(path.c_str(), O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC | O_RDWR, S_IRUSR | S_IWUSR);
    if (file < 0) {
        return errno == EEXIST ? 0 : errno;
    }
    ::close(file);
    return 0;
}

}  // namespace Tarnwick_API::Platform
