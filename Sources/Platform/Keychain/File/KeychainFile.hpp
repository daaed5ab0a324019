#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <filesystem>

namespace Tarnwick_API::Platform {

/// The status for a system error number.
[[nodiscard]] KeychainStatus statusOfSystemError(int number, KeychainStatus otherwise);

struct LocatedKeychainFile {
    KeychainStatus status = KeychainStatus::success;
    /// On success: absolute, and without a symbolic link in it.
    std::string path;
};

/// Looks for the regular file at `path`. `itemNotFound` when nothing is there; `invalidKeychain` for anything but a
/// file, a symbolic link too.
[[nodiscard]] LocatedKeychainFile locateKeychainFile(const std::filesystem::path& path);

/// `success` when the file at `path` can be written, or made when nothing is there, so far as rights tell.
[[nodiscard]] KeychainStatus writabilityOfKeychainFile(const std::filesystem::path& path);

/// Makes an empty file at `path` that is private (0600) from the first moment, and the folders that it needs (0700). A
/// file or anything else that is there already is left as it is, with success.
/// The POSIX locks of this process on the file may go with this call: no connection may be open meanwhile.
[[nodiscard]] KeychainStatus createKeychainFile(const std::filesystem::path& path);

}  // namespace Tarnwick_API::Platform
