#pragma once

#include <Platform/Keychain/SecretService/SecretServiceWorker.hpp>
#include <Platform/Keychain/StoredKeychainItem.hpp>

#include <atomic>
#include <chrono>
#include <vector>

namespace Tarnwick_API::Platform {

class SecretServiceItems;

/// See `makeSecretServiceKeychainStore`.
class SecretServiceKeychainStore final : public KeychainStore {
public:
    explicit SecretServiceKeychainStore(std::chrono::milliseconds timeout);

    [[nodiscard]] KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override;
    [[nodiscard]] KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override;
    [[nodiscard]] KeychainStatus add(const KeychainItem& item) override;
    [[nodiscard]] KeychainStatus remove(const KeychainQuery& target) override;
    [[nodiscard]] KeychainStoreState state() override;
    [[nodiscard]] std::optional<std::string> message(KeychainStatus status) const override;
    void unlock(std::function<void(KeychainStatus)> onCompletion) override;

    enum class Offer { offered, notOffered, noAnswer };
    struct Inquiry {
        Offer offer = Offer::noAnswer;
        /// For the debug channel.
        std::string reason = {};
    };
    /// Whether there is a Secret Service with a default collection, locked or not.
    [[nodiscard]] Inquiry inquire();

    /// See `SecretServiceItems`.
    [[nodiscard]] KeychainStatus migrate(const std::vector<StoredKeychainItem>& items);
    [[nodiscard]] KeychainStatus noteMoved(const std::vector<StoredKeychainItem>& items);
    [[nodiscard]] KeychainStatus forgetMoved(const std::vector<StoredKeychainItem>& items);

private:
    template <class Result>
    struct Outcome {
        KeychainStatus status = KeychainStatus::notAvailable;
        std::string reason = {};
        SecretServiceError::Missing missing = SecretServiceError::Missing::nothing;
        Result result = {};
    };
    /// What `work` gives on the worker's thread. `work` owns what it uses: it may outlive the call.
    template <class Result, class Work>
    Outcome<Result> onWorker(const char* operation, Work work);
    /// What `work` gives on the items.
    template <class Result, class Work>
    Outcome<Result> onItems(const char* operation, Work work);
    using Move = void (SecretServiceItems::*)(const std::vector<StoredKeychainItem>&);
    KeychainStatus moving(const char* operation, Move move, const std::vector<StoredKeychainItem>& items);

    std::chrono::milliseconds timeout_;
    SecretServiceWorker worker_;
    /// Why the last call found none, where its status alone doesn't tell.
    std::atomic<SecretServiceError::Missing> missing_ = SecretServiceError::Missing::nothing;
    /// See `SecretServiceItems`; the worker's.
    std::shared_ptr<bool> mayHaveFormerItems_ = std::make_shared<bool>(true);
};

}  // namespace Tarnwick_API::Platform
