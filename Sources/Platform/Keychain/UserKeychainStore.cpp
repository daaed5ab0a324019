#include <Platform/Keychain/File/FileKeychainStore.hpp>
#include <Platform/Keychain/SecretService/SecretServiceKeychainStore.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <mutex>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

void say(const std::string& what) {
    if (DebugChannel::isOpen()) {
        DebugChannel::write("Keychain: " + what, "makeUserKeychainStore");
    }
}

/// The Secret Service or the private file, whichever the first call finds.
class UserKeychainStore final : public KeychainStore {
public:
    UserKeychainStore(std::string file, std::chrono::milliseconds timeout)
        : file_{std::make_shared<FileKeychainStore>(file)},
          fileName_{std::move(file)},
          secretService_{std::make_shared<SecretServiceKeychainStore>(timeout)} {}

    KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override {
        const auto [status, store] = ready();
        return store ? store->copyMatching(query, wanted) : KeychainAnswer{status, {}};
    }

    KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override {
        const auto [status, store] = ready();
        return store ? store->update(target, changes) : status;
    }

    KeychainStatus add(const KeychainItem& item) override {
        const auto [status, store] = ready();
        return store ? store->add(item) : status;
    }

    KeychainStatus remove(const KeychainQuery& target) override {
        const auto [status, store] = ready();
        return store ? store->remove(target) : status;
    }

    KeychainStoreState state() override {
        const auto store = chosen();
        // A Secret Service that doesn't answer is asked once: it has just not answered.
        return store ? store->state() : KeychainStoreState{"Secret Service", {}, KeychainStatus::notAvailable};
    }

    void unlock(std::function<void(KeychainStatus)> onCompletion) override {
        const auto store = chosen();
        (store ? store : secretService_)->unlock(std::move(onCompletion));
    }

private:
    struct Ready {
        KeychainStatus status = KeychainStatus::success;
        /// None when the status says why.
        std::shared_ptr<KeychainStore> store = nullptr;
    };

    Ready ready() {
        auto store = chosen();
        if (!store) {
            return {KeychainStatus::notAvailable};
        }
        if (store == secretService_) {
            if (const auto status = migrate(); status != KeychainStatus::success) {
                return {status};
            }
        }
        return {KeychainStatus::success, std::move(store)};
    }

    /// None while a Secret Service is there that doesn't answer: the file then may not have what it has.
    std::shared_ptr<KeychainStore> chosen() {
        const std::lock_guard lock{mutex_};
        if (!chosen_) {
            const auto inquiry = secretService_->inquire();
            switch (inquiry.offer) {
                case SecretServiceKeychainStore::Offer::offered:
                    say("the Secret Service, as " + inquiry.reason);
                    chosen_ = secretService_;
                    break;
                case SecretServiceKeychainStore::Offer::notOffered:
                    say("the file " + fileName_ + ", as there is " + inquiry.reason);
                    chosen_ = file_;
                    break;
                case SecretServiceKeychainStore::Offer::noAnswer:
                    break;
            }
        }
        return chosen_;
    }

    /// Migrates what the file has to the Secret Service. A failure keeps the caller from taking for absent what is in
    /// the file.
    KeychainStatus migrate() {
        const std::lock_guard lock{mutex_};
        if (isMigrated_) {
            return KeychainStatus::success;
        }
        auto content = file_->everything();
        if (content.status == KeychainStatus::notAvailable) {
            return content.status;  // another process is busy with it
        }
        if (content.status != KeychainStatus::success) {
            say("the file " + fileName_ + " can't be moved to the Secret Service, as it can't be read");
        } else if (!content.items.empty()) {
            if (const auto status = secretService_->migrate(content.items, content.writtenAt);
                status != KeychainStatus::success) {
                return status;
            }
            if (file_->removeUnchanged(content.items) == KeychainStatus::success) {
                say("moved from the file to the Secret Service: " + std::to_string(content.items.size()) + " items");
            } else {
                say("the items in " + fileName_ + " can't be deleted, though the Secret Service has them now");
            }
        }
        isMigrated_ = true;
        return KeychainStatus::success;
    }

    const std::shared_ptr<FileKeychainStore> file_;
    const std::string fileName_;
    const std::shared_ptr<SecretServiceKeychainStore> secretService_;
    std::mutex mutex_;
    std::shared_ptr<KeychainStore> chosen_;
    bool isMigrated_ = false;
};

}  // namespace

std::shared_ptr<KeychainStore> makeUserKeychainStore(std::string file, std::chrono::milliseconds timeout) {
    return std::make_shared<UserKeychainStore>(std::move(file), timeout);
}

}  // namespace Tarnwick_API::Platform
