#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Keychain/File/FileKeychainStore.hpp>
#include <Platform/Keychain/SecretService/SecretServiceKeychainStore.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
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
          secretService_{std::make_shared<SecretServiceKeychainStore>(timeout)},
          timeout_{timeout} {}

    KeychainAnswer copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) override {
        return wherever([&](KeychainStore& store) { return store.copyMatching(query, wanted); });
    }

    KeychainStatus update(const KeychainQuery& target, const KeychainChanges& changes) override {
        return wherever([&](KeychainStore& store) { return KeychainAnswer{store.update(target, changes), {}}; }).status;
    }

    KeychainStatus add(const KeychainItem& item) override {
        const auto [status, store] = ready();
        return store ? store->add(item) : status;
    }

    KeychainStatus remove(const KeychainQuery& target) override {
        return wherever([&](KeychainStore& store) { return KeychainAnswer{store.remove(target), {}}; }).status;
    }

    std::optional<std::string> message(KeychainStatus status) const override {
        const bool isFiles = isFileToBlame_ || currentState() == State::file;
        return isFiles ? file_->message(status) : secretService_->message(status);
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
    // The lock guards this alone and is never held while the Secret Service or the disk is asked: a call that hangs
    // there delays no other beyond that one's own timeout.
    enum class State { undecided, file, unmigrated, migrating, secretService };

    struct Ready {
        KeychainStatus status = KeychainStatus::success;
        /// None when the status says why.
        std::shared_ptr<KeychainStore> store = nullptr;
    };

    /// What `call` answers on the store in use; and when it finds nothing in the file because another process has moved
    /// the items since this one chose, on the Secret Service.
    template <class Call>
    KeychainAnswer wherever(Call call) {
        const auto [status, store] = ready();
        if (!store) {
            return {status, {}};
        }
        auto answer = call(*store);
        if (answer.status != KeychainStatus::itemNotFound || store != file_ || !file_->haveItemsMoved()) {
            return answer;
        }
        const auto inquiry = secretService_->inquire();
        if (inquiry.offer == SecretServiceKeychainStore::Offer::notOffered) {
            return answer;
        }
        if (inquiry.offer == SecretServiceKeychainStore::Offer::noAnswer) {
            return {KeychainStatus::notAvailable, {}};
        }
        if (decide(State::file, State::unmigrated)) {
            say("the Secret Service, as another process has moved the items to it");
        }
        const auto [newStatus, newStore] = ready();
        return newStore ? call(*newStore) : KeychainAnswer{newStatus, {}};
    }

    Ready ready() {
        auto store = chosen();
        if (!store) {
            return {KeychainStatus::notAvailable};
        }
        // In a child of `fork` the call that migrates may be one of the parent's: the Secret Service itself refuses.
        if (store == secretService_ && !SecretServiceWorker::isLost()) {
            if (const auto status = migrateOnce(); status != KeychainStatus::success) {
                return {status};
            }
        }
        return {KeychainStatus::success, std::move(store)};
    }

    /// None while a Secret Service is there that doesn't answer: the file then may not have what it has.
    std::shared_ptr<KeychainStore> chosen() {
        if (auto store = storeOf(currentState())) {
            return store;
        }
        const auto inquiry = secretService_->inquire();
        switch (inquiry.offer) {
            case SecretServiceKeychainStore::Offer::offered:
                if (decide(State::undecided, State::unmigrated)) {
                    say("the Secret Service, as " + inquiry.reason);
                }
                break;
            case SecretServiceKeychainStore::Offer::notOffered:
                if (decide(State::undecided, State::file)) {
                    say("the file " + fileName_ + ", as there is " + inquiry.reason);
                }
                break;
            case SecretServiceKeychainStore::Offer::noAnswer:
                break;
        }
        return storeOf(currentState());
    }

    /// False when another call has decided meanwhile.
    bool decide(State before, State after) {
        const std::lock_guard lock{mutex_};
        if (state_ != before) {
            return false;
        }
        state_ = after;
        return true;
    }

    State currentState() const {
        const std::lock_guard lock{mutex_};
        return state_;
    }

    [[nodiscard]] std::shared_ptr<KeychainStore> storeOf(State state) const {
        switch (state) {
            case State::undecided:
                return nullptr;
            case State::file:
                return file_;
            default:
                return secretService_;
        }
    }

    /// Migrates, or waits for the call that does: what it gets is every waiting call's answer.
    KeychainStatus migrateOnce() {
        {
            std::unique_lock lock{mutex_};
            if (state_ == State::migrating) {
                const bool hasEnded = changed_.wait_for(lock, timeout_, [&] { return state_ != State::migrating; });
                return hasEnded ? lastMigration_ : KeychainStatus::notAvailable;
            }
            if (state_ == State::secretService) {
                return KeychainStatus::success;
            }
            state_ = State::migrating;
        }
        const DebugChannel::Deferral tellsWhenNobodyWaits;
        struct End {
            ~End() {
                const std::lock_guard lock{store.mutex_};
                store.lastMigration_ = status;
                store.state_ = status == KeychainStatus::success ? State::secretService : State::unmigrated;
                store.changed_.notify_all();
            }
            UserKeychainStore& store;
            KeychainStatus status = KeychainStatus::notAvailable;
        } end{*this};
        return end.status = migrate();
    }

    /// Migrates what the file has to the Secret Service. A failure keeps the caller from taking for absent what is in
    /// the file.
    KeychainStatus migrate() {
        // Another process may write into the file meanwhile; what it keeps on writing is for the next one to migrate.
        constexpr int rounds = 3;
        for (int round = 0; round < rounds; ++round) {
            const auto content = file_->everything();
            isFileToBlame_ = content.status == KeychainStatus::notAvailable;
            if (content.status == KeychainStatus::notAvailable) {
                return content.status;  // another process is busy with it
            }
            if (content.status != KeychainStatus::success) {
                say("the file " + fileName_ + " can't be moved to the Secret Service, as it can't be read");
                return KeychainStatus::success;
            }
            if (content.items.empty()) {
                return KeychainStatus::success;
            }
            if (const auto status = secretService_->migrate(content.items); status != KeychainStatus::success) {
                return status;
            }
            if (file_->removeMoved(content.items) != KeychainStatus::success) {
                say("the items in " + fileName_ + " can't be deleted, though the Secret Service has them now");
                // Otherwise one that is deleted there would come back from here.
                return secretService_->noteMoved(content.items);
            }
            say("moved from the file to the Secret Service: " + std::to_string(content.items.size()) + " items");
            // A note that stays does no harm: its reference is never used again.
            static_cast<void>(secretService_->forgetMoved(content.items));
        }
        return KeychainStatus::success;
    }

    const std::shared_ptr<FileKeychainStore> file_;
    const std::string fileName_;
    const std::shared_ptr<SecretServiceKeychainStore> secretService_;
    const std::chrono::milliseconds timeout_;
    /// Whether what was last not available was the file, on the way to the Secret Service.
    std::atomic<bool> isFileToBlame_ = false;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::outer, &changed_};
    State state_ = State::undecided;
    KeychainStatus lastMigration_ = KeychainStatus::success;
};

}  // namespace

std::shared_ptr<KeychainStore> makeUserKeychainStore(std::string file, std::chrono::milliseconds timeout) {
    return std::make_shared<UserKeychainStore>(std::move(file), timeout);
}

}  // namespace Tarnwick_API::Platform
