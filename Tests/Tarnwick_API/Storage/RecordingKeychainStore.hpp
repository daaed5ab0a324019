#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A store that passes its calls on, writes them down, and can be told to answer the next one of a kind otherwise.
class RecordingKeychainStore final : public Tarnwick_API::Platform::KeychainStore {
public:
    explicit RecordingKeychainStore(
        std::shared_ptr<KeychainStore> store = Tarnwick_API::Platform::makeMemoryKeychainStore());

    Tarnwick_API::Platform::KeychainAnswer copyMatching(const Tarnwick_API::Platform::KeychainQuery& query,
                                                        const Tarnwick_API::Platform::KeychainReturn& wanted) override;
    Tarnwick_API::Platform::KeychainStatus update(const Tarnwick_API::Platform::KeychainQuery& target,
                                                  const Tarnwick_API::Platform::KeychainChanges& changes) override;
    Tarnwick_API::Platform::KeychainStatus add(const Tarnwick_API::Platform::KeychainItem& item) override;
    Tarnwick_API::Platform::KeychainStatus remove(const Tarnwick_API::Platform::KeychainQuery& target) override;
    std::optional<std::string> message(Tarnwick_API::Platform::KeychainStatus status) const override;

    /// The next look-up answers this and asks no store.
    void answerNext(Tarnwick_API::Platform::KeychainAnswer answer);
    /// The next "copyMatching", "update", "add" or "remove" fails and changes nothing.
    void failNext(const std::string& operation, Tarnwick_API::Platform::KeychainStatus status);
    void giveNoMessages();

    /// The calls since the last time, each as its name and its arguments in the order that the platform takes.
    [[nodiscard]] std::vector<std::string> takeCalls();

private:
    std::optional<Tarnwick_API::Platform::KeychainStatus> record(const std::string& operation,
                                                                 const std::string& arguments);

    std::shared_ptr<KeychainStore> store_;
    std::vector<std::string> calls_;
    std::optional<Tarnwick_API::Platform::KeychainAnswer> answer_;
    std::map<std::string, Tarnwick_API::Platform::KeychainStatus> failures_;
    bool hasMessages_ = true;
};
