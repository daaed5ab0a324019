#pragma once

#include <Platform/Keychain/StoredKeychainItem.hpp>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace Tarnwick_API::Platform {

class KeychainDatabase;

/// The items in one private file. Each call opens the file and closes it again: calls are few, and a store that kept it
/// open would write into a file that was meanwhile removed or replaced, would carry a connection over a fork, and would
/// lose its locks to whatever else in the process closes the same file.
class FileKeychainStore final : public KeychainStore {
public:
    /// A call waits at most `timeout` for other processes; after one that waited in vain, the next ones don't wait
    /// until one has found the file free.
    explicit FileKeychainStore(const std::string& path, std::chrono::milliseconds timeout = std::chrono::seconds{1});

    [[nodiscard]] KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override;
    [[nodiscard]] KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override;
    [[nodiscard]] KeychainStatus add(const KeychainItem& item) override;
    [[nodiscard]] KeychainStatus remove(const KeychainQuery& target) override;
    [[nodiscard]] KeychainStoreState state() override;
    [[nodiscard]] std::optional<std::string> message(KeychainStatus status) const override;

    struct Content {
        KeychainStatus status = KeychainStatus::success;
        /// The oldest first; none when there is no file.
        std::vector<StoredKeychainItem> items = {};
    };
    [[nodiscard]] Content everything();
    /// Removes those of `items` that are still the same, all at once, and notes that items have moved elsewhere.
    [[nodiscard]] KeychainStatus removeMoved(const std::vector<StoredKeychainItem>& items);
    /// Whether another process may have moved what is not here any more.
    [[nodiscard]] bool haveItemsMoved();

private:
    class Turn;
    /// Why the last call failed, where its status alone doesn't tell.
    enum class Failure { none, lockedByOthers, noPlace, foreign, damaged };
    enum class OnDamage { fail, setAside };

    /// The status of `work` on the file, or that of finding it; `itemNotFound` when a damaged one has been set aside.
    template <class Work>
    KeychainStatus onFile(const Turn& turn, OnDamage onDamage, Work work);
    template <class Work>
    std::optional<KeychainStatus> onIntactFile(KeychainDatabase& database, const std::string& file, Work work);
    KeychainStatus giveUp(const Turn& turn);
    KeychainStatus setAside(const Turn& turn, KeychainDatabase& database, const std::string& file);

    std::filesystem::path path_;
    std::chrono::milliseconds timeout_;
    std::atomic<Failure> failure_ = Failure::none;
};

}  // namespace Tarnwick_API::Platform
