#pragma once

#include <chrono>
#include <filesystem>

namespace Tarnwick_API::Platform {

/// Keeps a damaged file from being set aside under those who have it open: SQLite finds a journal by the file's path,
/// and would take the new file's for that of the old one. Without rights on the folder it does nothing.
class KeychainFolderLock {
public:
    using Deadline = std::chrono::steady_clock::time_point;

    /// Shares the folder with other calls; waits for one that sets a file aside, until `deadline` at most.
    KeychainFolderLock(const std::filesystem::path& folder, Deadline deadline);
    KeychainFolderLock(const KeychainFolderLock&) = delete;
    KeychainFolderLock& operator=(const KeychainFolderLock&) = delete;
    ~KeychainFolderLock();

    /// Waits until all others have left. Another call may have been exclusive in between. False after `deadline`.
    [[nodiscard]] bool becomeExclusive(Deadline deadline);

private:
    [[nodiscard]] bool take(int kind, Deadline deadline) const;

    int folder_;
};

}  // namespace Tarnwick_API::Platform
