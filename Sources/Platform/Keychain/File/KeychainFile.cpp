#include <Platform/Keychain/File/KeychainFile.hpp>

#include <Platform/Application/PrivateFile.hpp>

#include <cerrno>
#include <utility>

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
    auto found = findPrivateFile(path);
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

KeychainStatus createKeychainFile(const std::filesystem::path& path) {
    if (!path.has_filename()) {
        return KeychainStatus::notAvailable;
    }
    const int error = createPrivateFile(path);
    return error == 0 ? KeychainStatus::success : statusOfSystemError(error, KeychainStatus::notAvailable);
}

}  // namespace Tarnwick_API::Platform
