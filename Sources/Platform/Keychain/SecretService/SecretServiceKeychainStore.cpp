#include <Platform/Keychain/SecretService/SecretServiceKeychainStore.hpp>

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <Platform/Keychain/SecretService/SecretServiceItems.hpp>
#include <Platform/Keychain/SecretService/ThreadMainContext.hpp>
#include <Platform/Keychain/SharedSecret.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <cstdlib>
#include <utility>

namespace Tarnwick_API::Platform {

namespace {

constexpr const char* lostToFork = "not asked, as a child of fork has not the threads of its parent";

void say(const std::string& what, const char* operation) {
    if (DebugChannel::isOpen()) {
        DebugChannel::write("Secret Service: " + what, operation);
    }
}

bool isAnswer(KeychainStatus status) {
    return status == KeychainStatus::success || status == KeychainStatus::itemNotFound ||
           status == KeychainStatus::duplicateItem || status == KeychainStatus::interactionNotAllowed;
}

bool hasDisplay() {
    const auto isSet = [](const char* name) {
        const auto* const value = std::getenv(name);
        return value != nullptr && *value != '\0';
    };
    return isSet("WAYLAND_DISPLAY") || isSet("DISPLAY");
}

KeychainStatus askToUnlock() {
    const GLibOwner<GMainContext> context{g_main_context_new()};
    const ThreadMainContext ownContext{context.get()};
    SecretServiceConnection connection{SecretServiceConnection::Prompts::shown};
    const auto collection = connection.defaultCollection();
    if (secret_collection_get_locked(collection.get()) == FALSE || connection.unlock(collection.get())) {
        return KeychainStatus::success;
    }
    // The Secret Service tells a prompt that the user has dismissed no differently from one that it could not show.
    return hasDisplay() ? KeychainStatus::userCanceled : KeychainStatus::interactionNotAllowed;
}

}  // namespace

SecretServiceKeychainStore::SecretServiceKeychainStore(std::chrono::milliseconds timeout)
    : timeout_{timeout}, worker_{timeout} {
}

template <class Result, class Work>
SecretServiceKeychainStore::Outcome<Result> SecretServiceKeychainStore::onWorker(const char* operation, Work work) {
    const auto outcome = std::make_shared<Outcome<Result>>();
    const auto end = worker_.run([outcome, work = std::move(work)](SecretServiceConnection& connection) {
        try {
            outcome->result = work(connection);
            outcome->status = KeychainStatus::success;
        } catch (const SecretServiceError& failure) {
            outcome->status = failure.status();
            outcome->reason = failure.what();
            outcome->missing = failure.missing();
        } catch (const std::exception&) {
            outcome->status = KeychainStatus::io;
            outcome->reason = "out of memory";
        }
        if (!isAnswer(outcome->status)) {
            connection.drop();
        }
    });
    switch (end) {
        case SecretServiceWorker::End::done:
            missing_ = outcome->missing;
            if (!outcome->reason.empty()) {
                say(outcome->reason, operation);
            }
            return std::move(*outcome);
        case SecretServiceWorker::End::givenUp:
            say("no answer within " + std::to_string(timeout_.count()) + " ms, given up", operation);
            break;
        case SecretServiceWorker::End::refused:
            say("has not answered an earlier call yet", operation);
            break;
        case SecretServiceWorker::End::lost:
            say(lostToFork, operation);
            break;
    }
    missing_ = SecretServiceError::Missing::answer;
    Outcome<Result> none;
    none.missing = SecretServiceError::Missing::answer;
    return none;
}

template <class Result, class Work>
SecretServiceKeychainStore::Outcome<Result> SecretServiceKeychainStore::onItems(const char* operation, Work work) {
    return onWorker<Result>(operation, [mayHaveFormerItems = mayHaveFormerItems_,
                                        work = std::move(work)](SecretServiceConnection& connection) {
        SecretServiceItems items{connection, *mayHaveFormerItems};
        return work(items);
    });
}

KeychainAnswer SecretServiceKeychainStore::copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) {
    auto outcome = onItems<KeychainAnswer>(
        "copyMatching", [=](SecretServiceItems& items) { return items.copyMatching(query, wanted); });
    return outcome.status == KeychainStatus::success ? std::move(outcome.result) : KeychainAnswer{outcome.status, {}};
}

KeychainStatus SecretServiceKeychainStore::update(const KeychainQuery& target, const KeychainChanges& changes) {
    const auto outcome =
        onItems<KeychainStatus>("update", [target, changed = sharedSecret(changes)](SecretServiceItems& items) {
            return items.update(target, *changed);
        });
    return outcome.status == KeychainStatus::success ? outcome.result : outcome.status;
}

KeychainStatus SecretServiceKeychainStore::add(const KeychainItem& item) {
    const auto outcome = onItems<KeychainStatus>(
        "add", [added = sharedSecret(item)](SecretServiceItems& items) { return items.add(*added); });
    return outcome.status == KeychainStatus::success ? outcome.result : outcome.status;
}

KeychainStatus SecretServiceKeychainStore::remove(const KeychainQuery& target) {
    const auto outcome =
        onItems<KeychainStatus>("remove", [=](SecretServiceItems& items) { return items.remove(target); });
    return outcome.status == KeychainStatus::success ? outcome.result : outcome.status;
}

KeychainStatus SecretServiceKeychainStore::moving(const char* operation, Move move,
                                                  const std::vector<StoredKeychainItem>& items) {
    return onItems<bool>(operation,
                         [move, moved = items](SecretServiceItems& own) {
                             (own.*move)(moved);
                             return true;
                         })
        .status;
}

KeychainStatus SecretServiceKeychainStore::migrate(const std::vector<StoredKeychainItem>& items) {
    return moving("migrate", &SecretServiceItems::migrate, items);
}

KeychainStatus SecretServiceKeychainStore::noteMoved(const std::vector<StoredKeychainItem>& items) {
    return moving("noteMoved", &SecretServiceItems::noteMoved, items);
}

KeychainStatus SecretServiceKeychainStore::forgetMoved(const std::vector<StoredKeychainItem>& items) {
    return moving("forgetMoved", &SecretServiceItems::forgetMoved, items);
}

KeychainStoreState SecretServiceKeychainStore::state() {
    auto outcome = onWorker<KeychainStoreState>("state", [](SecretServiceConnection& connection) -> KeychainStoreState {
        const auto collection = connection.defaultCollection();
        return {{},
                g_dbus_proxy_get_object_path(G_DBUS_PROXY(collection.get())),
                secret_collection_get_locked(collection.get()) != FALSE ? KeychainStatus::interactionNotAllowed
                                                                        : KeychainStatus::success};
    });
    auto& state = outcome.result;
    state.name = "Secret Service";
    if (outcome.status != KeychainStatus::success) {
        state.status = outcome.status;
    }
    return std::move(state);
}

std::optional<std::string> SecretServiceKeychainStore::message(KeychainStatus status) const {
    using Missing = SecretServiceError::Missing;
    switch (status) {
        case KeychainStatus::notAvailable:
            switch (missing_.load()) {
                case Missing::bus:
                    return "This session has no bus to reach a keyring on. Sign in to a desktop, or use a keychain "
                           "file.";
                case Missing::service:
                    return "No keyring runs in this session. Start the desktop's keyring, or use a keychain file.";
                case Missing::collection:
                    return "The keyring has no default collection. Make one in the desktop's password manager.";
                case Missing::answer:
                case Missing::nothing:
                    return "The keyring does not answer. Try again; if it stays so, sign out of the desktop and in "
                           "again.";
            }
            break;
        case KeychainStatus::interactionNotAllowed:
            return "The keyring is locked. Unlock it, and try again.";
        case KeychainStatus::io:
            return "The keyring could not do it. See whether its disk is full or read-only.";
        default:
            break;
    }
    return KeychainStore::message(status);
}

SecretServiceKeychainStore::Inquiry SecretServiceKeychainStore::inquire() {
    auto outcome = onWorker<std::string>("inquire", [](SecretServiceConnection& connection) {
        const auto collection = connection.defaultCollection();
        return std::string{g_dbus_proxy_get_object_path(G_DBUS_PROXY(collection.get()))};
    });
    if (outcome.status == KeychainStatus::success) {
        return {Offer::offered, "it has " + outcome.result};
    }
    const bool isOffered = outcome.missing == SecretServiceError::Missing::nothing ||
                           outcome.missing == SecretServiceError::Missing::answer;
    return {isOffered ? Offer::noAnswer : Offer::notOffered, std::move(outcome.reason)};
}

void SecretServiceKeychainStore::unlock(std::function<void(KeychainStatus)> onCompletion) {
    // A thread and a connection of its own, as the prompt may stay for minutes.
    const auto complete = [queue = MainQueue::main(), onCompletion = std::move(onCompletion)](KeychainStatus status) {
        if (onCompletion) {
            queue->soon([onCompletion, status] { onCompletion(status); });
        }
    };
    if (SecretServiceWorker::isLost()) {
        say(lostToFork, "unlock");
        complete(KeychainStatus::notAvailable);
        return;
    }
    const bool isStarted = SecretServiceWorker::startThread([complete] {
        auto status = KeychainStatus::notAvailable;
        try {
            status = askToUnlock();
        } catch (const SecretServiceError& failure) {
            status = failure.status();
            say(failure.what(), "unlock");
        } catch (const std::exception&) {
            status = KeychainStatus::io;
        }
        complete(status);
    });
    if (!isStarted) {
        complete(KeychainStatus::notAvailable);
    }
}

std::shared_ptr<KeychainStore> makeSecretServiceKeychainStore(std::chrono::milliseconds timeout) {
    return std::make_shared<SecretServiceKeychainStore>(timeout);
}

}  // namespace Tarnwick_API::Platform
