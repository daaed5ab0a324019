#pragma once

#include <Platform/Keychain/StoredKeychainItem.hpp>

#include <chrono>
#include <filesystem>
#include <vector>

namespace Tarnwick_API::Platform {

/// The items in one private file. Each call opens the file and closes it again: calls are few, and a store that kept it
/// open would write into a file that was meanwhile removed or replaced, would carry a connection over a fork, and would
/// lose its locks to whatever else in the process closes the same file.
class FileKeychainStore final : public KeychainStore {
public:
    /// A call waits at most `timeout` for each lock that it needs (one to read, two to write).
    explicit FileKeychainStore(const std::string& path, std::chrono::milliseconds timeout = std::chrono::seconds{1});

    [[nodiscard]] KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override;
    [[nodiscard]] KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override;
    [[nodiscard]] KeychainStatus add(const KeychainItem& item) override;
    [[nodiscard]] KeychainStatus remove(const KeychainQuery& target) override;
    [[nodiscard]] KeychainStoreState state() override;

    struct Content {
        KeychainStatus status = KeychainStatus::success;
        /// The oldest first; none when there is no file.
        std::vector<StoredKeychainItem> items = {};
        std::chrono::system_clock::time_point writtenAt = {};
    };
    [[nodiscard]] Content everything();
    /// Removes those of `items` that are still the same, all at once.
    [[nodiscard]] KeychainStatus removeUnchanged(const std::vector<StoredKeychainItem>& items);

private:
    std::filesystem::path path_;
    std::chrono::milliseconds timeout_;
};

}  // namespace Tarnwick_API::Platform
