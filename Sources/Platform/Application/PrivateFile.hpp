#pragma once

#include <filesystem>
#include <string>

namespace Tarnwick_API::Platform {

struct FoundFile {
    /// Zero, or a system error number: ENOENT when nothing is there, ENOTSUP for anything but a regular file (a
    /// symbolic link too), EACCES for a file of another user, unless this one is root.
    int error = 0;
    /// On success: absolute, and without a symbolic link in it.
    std::string path;
};

/// Looks for the regular file at `path`, and takes from group and others what rights they have on it (a restored copy,
/// say).
[[nodiscard]] FoundFile findPrivateFile(const std::filesystem::path& path);

/// The same without a change, for who has to look at the file first.
[[nodiscard]] FoundFile findOwnFile(const std::filesystem::path& path);

/// Takes from group and others what rights they have on the regular file at `path`. Where that fails (a read-only or
/// foreign file system) a secret that is there can still be read, no worse than before.
void closeToOthers(const std::filesystem::path& path);

/// Makes an empty file at `path` that is private (0600) from the first moment, and the folders that it needs (0700). A
/// file or anything else that is there already is left as it is, with success. Gives zero or a system error number.
/// The POSIX locks of this process on the file may go with this call: no connection may be open meanwhile.
[[nodiscard]] int createPrivateFile(const std::filesystem::path& path);

}  // namespace Tarnwick_API::Platform
