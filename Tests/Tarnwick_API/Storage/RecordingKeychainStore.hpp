#pragma once

#include <Tarnwick_API/Platform/KeychainStore.hpp>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A store that passes its calls on, writes them down, and can be told to answer the next one of a kind otherwise.
class RecordingKeychainStore final : public Platform::KeychainStore {
public:
    explicit RecordingKeychainStore(std::shared_ptr<KeychainStore> store = Platform::makeMemoryKeychainStore());

    Platform::KeychainAnswer copyMatching(const Platform::KeychainQuery& query,
                                          const Platform::KeychainReturn& wanted) override;
    Platform::KeychainStatus update(const Platform::KeychainQuery& target,
                                    const Platform::KeychainChanges& changes) override;
    Platform::KeychainStatus add(const Platform::KeychainItem& item) override;
    Platform::KeychainStatus remove(const Platform::KeychainQuery& target) override;
    std::optional<std::string> message(Platform::KeychainStatus status) const override;

    /// The next look-up answers this and asks no store.
    void answerNext(Platform::KeychainAnswer answer);
    /// The next "copyMatching", "update", "add" or "remove" fails and changes nothing.
    void failNext(const std::string& operation, Platform::KeychainStatus status);
    void giveNoMessages();

    /// The calls since the last time, each as its name and its arguments in the order that the platform takes.
    [[nodiscard]] std::vector<std::string> takeCalls();

private:
    std::optional<Platform::KeychainStatus> record(const std::string& operation, const std::string& arguments);

    std::shared_ptr<KeychainStore> store_;
    std::vector<std::string> calls_;
    std::optional<Platform::KeychainAnswer> answer_;
    std::map<std::string, Platform::KeychainStatus> failures_;
    bool hasMessages_ = true;
};
