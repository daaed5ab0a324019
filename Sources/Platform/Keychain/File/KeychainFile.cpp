#include <Platform/Keychain/File/KeychainFile.hpp>

#include <Platform/Application/PrivateFile.hpp>

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace Tarnwick_API::Platform {

KeychainStatus statusOfSystemError(int number, KeychainStatus otherwise) {
    switch (number) {
        case EACCES:
        case EPERM:
        case EROFS:
            return KeychainStatus::writePermission;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return KeychainStatus::diskFull;
        case EIO:
            return KeychainStatus::io;
        default:
            return otherwise;
    }
}

LocatedKeychainFile locateKeychainFile(const std::filesystem::path& path) {
    if (!path.has_filename()) {
        return {KeychainStatus::notAvailable, {}};
    }
    auto found = findOwnFile(path);
    switch (found.error) {
        case 0:
            return {KeychainStatus::success, std::move(found.path)};
        case ENOENT:
            return {KeychainStatus::itemNotFound, {}};
        case ENOTSUP:
            return {KeychainStatus::invalidKeychain, {}};
        default:
            return {statusOfSystemError(found.error, KeychainStatus::notAvailable), {}};
    }
}

KeychainStatus writabilityOfKeychainFile(const std::filesystem::path& path) {
    const auto check = [](const std::filesystem::path& place, int rights) {
        return ::faccessat(AT_FDCWD, place.c_str(), rights, AT_EACCESS) == 0 ? 0 : errno;
    };
    int error = check(path, W_OK);
    if (error == 0 || error == ENOENT) {
        // A change needs the folder too, for its journal; a folder that is missing is made in the next one above.
        auto folder = path.parent_path();
        while ((error = check(folder, W_OK | X_OK)) == ENOENT && folder.has_relative_path()) {
            folder = folder.parent_path();
        }
    }
    return error == 0 ? KeychainStatus::success : statusOfSystemError(error, KeychainStatus::notAvailable);
}

KeychainStatus createKeychainFile(const std::filesystem::path& path) {
    if (!path.has_filename()) {
        return KeychainStatus::notAvailable;
    }
    const int error = createPrivateFile(path);
    return error == 0 ? KeychainStatus::success : statusOfSystemError(error, KeychainStatus::notAvailable);
}

}  // namespace Tarnwick_API::Platform
