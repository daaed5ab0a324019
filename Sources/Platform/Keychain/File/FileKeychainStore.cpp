#include <Platform/Keychain/File/FileKeychainStore.hpp>

#include <Platform/Application/PrivateFile.hpp>
#include <Platform/Application/ProcessWide.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Keychain/File/DamagedKeychainFile.hpp>
#include <Platform/Keychain/File/KeychainDatabase.hpp>
#include <Platform/Keychain/File/KeychainFile.hpp>
#include <Platform/Keychain/File/KeychainFolderLock.hpp>
#include <Platform/Logging/DebugChannel.hpp>

#include <mutex>
#include <system_error>
#include <utility>

#include <sqlite3.h>

namespace Tarnwick_API::Platform {

namespace {

/// Held through every call of every file store: the descriptor that makes a file, when it is closed, takes with it the
/// POSIX locks of all connections of this process to that file. `fork` waits for it too: a child that inherited a
/// connection in use could open the file no more.
std::mutex& fileAccess() {
    // Made before, as its holder may be the first to ask for them.
    static const auto& values = ProcessValuesInUse::shared();
    static_cast<void>(values);
    static std::mutex mutex;
    static const HeldOverFork heldOverFork{mutex, HeldOverFork::Order::outer};
    return mutex;
}

void say(const std::string& what) {
    if (DebugChannel::isOpen()) {
        DebugChannel::write("Keychain: " + what, "FileKeychainStore");
    }
}

}  // namespace

/// A call's turn, and how long it may take.
class FileKeychainStore::Turn {
public:
    explicit Turn(const FileKeychainStore& store)
        : deadline_{std::chrono::steady_clock::now() + store.timeout_}, lock_{fileAccess()} {
        if (store.failure_ == Failure::lockedByOthers) {
            deadline_ = {};
        }
    }

    [[nodiscard]] std::chrono::steady_clock::time_point deadline() const { return deadline_; }
    /// False when an earlier call has waited in vain.
    [[nodiscard]] bool mayWait() const { return deadline_ != std::chrono::steady_clock::time_point{}; }

private:
    std::chrono::steady_clock::time_point deadline_;
    DebugChannel::Deferral tellsWhenUnlocked_;
    std::lock_guard<std::mutex> lock_;
};

FileKeychainStore::FileKeychainStore(const std::string& path, std::chrono::milliseconds timeout)
    : path_{path}, timeout_{timeout} {
    // A later change of the working folder shall not lose the items.
    std::error_code error;
    if (auto absolute = std::filesystem::absolute(path_, error); !error) {
        path_ = std::move(absolute);
    }
}

template <class Work>
KeychainStatus FileKeychainStore::onFile(const Turn& turn, OnDamage onDamage, Work work) {
    failure_ = Failure::none;
    KeychainFolderLock folder{path_.parent_path(), turn.deadline()};
    const auto file = locateKeychainFile(path_);
    if (file.status != KeychainStatus::success) {
        failure_ = file.status == KeychainStatus::invalidKeychain ? Failure::foreign : Failure::noPlace;
        return file.status;
    }
    try {
        KeychainDatabase database{file.path, turn.deadline()};
        if (const auto status = onIntactFile(database, file.path, work)) {
            return *status;
        }
        failure_ = Failure::damaged;
        closeToOthers(file.path);
        if (onDamage == OnDamage::setAside) {
            return folder.becomeExclusive(turn.deadline()) ? setAside(turn, database, file.path) : giveUp(turn);
        }
        say("the file " + path_.string() + " is damaged; the next addition or removal sets it aside");
        return KeychainStatus::invalidKeychain;
    } catch (const SqliteError& error) {
        return error.primaryCode() == SQLITE_BUSY ? giveUp(turn) : KeychainDatabase::statusOf(error);
    }
}

/// None when the file is a keychain's and damaged.
template <class Work>
std::optional<KeychainStatus> FileKeychainStore::onIntactFile(KeychainDatabase& database, const std::string& file,
                                                              Work work) {
    try {
        switch (database.begin()) {
            case KeychainFileContent::keychain:
                closeToOthers(file);
                break;
            case KeychainFileContent::empty:
                break;
            case KeychainFileContent::unknown:
                // Nobody else has anything to put into the library's own place.
                if (path_ == defaultKeychainFile()) {
                    return std::nullopt;
                }
                [[fallthrough]];
            case KeychainFileContent::foreignDatabase:
                failure_ = Failure::foreign;
                return KeychainStatus::invalidKeychain;
        }
        return work(database);
    } catch (const SqliteError& error) {
        if (!KeychainDatabase::meansDamage(error)) {
            throw;
        }
        return std::nullopt;
    }
}

KeychainStatus FileKeychainStore::giveUp(const Turn& turn) {
    failure_ = Failure::lockedByOthers;
    say("the file " + path_.string() +
        (turn.mayWait() ? " is locked by another process, given up after " + std::to_string(timeout_.count()) + " ms"
                        : " is still locked by another process"));
    return KeychainStatus::notAvailable;
}

KeychainStatus FileKeychainStore::setAside(const Turn& turn, KeychainDatabase& database, const std::string& file) {
    if (const auto status = database.takeForItself(); status != KeychainStatus::success) {
        return status == KeychainStatus::notAvailable ? giveUp(turn) : status;
    }
    const auto aside = setAsideDamagedFile(file);
    if (aside.status != KeychainStatus::success) {
        say("the file " + file + " is damaged and can't be set aside");
        return aside.status;
    }
    say("the file " + file + " is damaged; all that it has is set aside as " + aside.path.string());
    return KeychainStatus::itemNotFound;
}

KeychainAnswer FileKeychainStore::copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) {
    const Turn turn{*this};
    KeychainAnswer answer;
    answer.status = onFile(turn, OnDamage::fail, [&](KeychainDatabase& database) {
        auto found = database.first(query);
        if (found.status == KeychainStatus::success) {
            answer = answerShowing(std::move(found.item), wanted);
        }
        return found.status;
    });
    return answer;
}

KeychainStatus FileKeychainStore::update(const KeychainQuery& target, const KeychainChanges& changes) {
    const Turn turn{*this};
    return onFile(turn, OnDamage::fail, [&](KeychainDatabase& database) { return database.update(target, changes); });
}

KeychainStatus FileKeychainStore::add(const KeychainItem& item) {
    const Turn turn{*this};
    const StoredKeychainItem added{item.service,       item.account,   item.label,
                                   item.comment,       item.data,      freshPersistentReference(),
                                   item.accessibility, timeOfWriting()};
    const auto attempt = [&](OnDamage onDamage) {
        if (const auto status = createKeychainFile(path_); status != KeychainStatus::success) {
            failure_ = Failure::noPlace;
            return status;
        }
        return onFile(turn, onDamage, [&](KeychainDatabase& database) {
            closeToOthers(path_);
            return database.add(added);
        });
    };
    const auto status = attempt(OnDamage::setAside);
    // The place is free now, whoever made it so.
    return status == KeychainStatus::itemNotFound ? attempt(OnDamage::fail) : status;
}

KeychainStatus FileKeychainStore::remove(const KeychainQuery& target) {
    const Turn turn{*this};
    return onFile(turn, OnDamage::setAside, [&](KeychainDatabase& database) { return database.remove(target); });
}

KeychainStoreState FileKeychainStore::state() {
    KeychainStoreState state{"private file", path_.string(), copyMatching({}, {}).status};
    if (state.status == KeychainStatus::itemNotFound || state.status == KeychainStatus::success) {
        state.status = writabilityOfKeychainFile(path_);
        state.isReadOnly = state.status != KeychainStatus::success;
    }
    state.damagedFile = latestDamagedFile(path_).string();
    return state;
}

std::optional<std::string> FileKeychainStore::message(KeychainStatus status) const {
    const auto failure = failure_.load();
    switch (status) {
        case KeychainStatus::notAvailable:
            switch (failure) {
                case Failure::lockedByOthers:
                    return "Another program keeps the keychain file locked. Try again when it is done.";
                case Failure::noPlace:
                    return "There is no place for the keychain file. Check that its folder can be made.";
                default:
                    return "The keychain file can't be used at the moment. Try again.";
            }
        case KeychainStatus::invalidKeychain:
            if (failure == Failure::damaged) {
                return "The keychain file is damaged. The next token that is kept gets a new one.";
            }
            break;
        case KeychainStatus::unknownFormat:
            return "The keychain file was made by a later version. Use that version, or another file.";
        case KeychainStatus::writePermission:
            return "The keychain file can't be written. Check the rights on it and on its folder.";
        case KeychainStatus::io:
            return "The disk with the keychain file fails.";
        default:
            break;
    }
    return KeychainStore::message(status);
}

FileKeychainStore::Content FileKeychainStore::everything() {
    const Turn turn{*this};
    Content content;
    content.status =
        onFile(turn, OnDamage::fail, [&](KeychainDatabase& database) { return database.everything(content.items); });
    if (content.status == KeychainStatus::itemNotFound) {
        content.status = KeychainStatus::success;
    }
    return content;
}

KeychainStatus FileKeychainStore::removeMoved(const std::vector<StoredKeychainItem>& items) {
    const Turn turn{*this};
    return onFile(turn, OnDamage::fail, [&](KeychainDatabase& database) { return database.removeMoved(items); });
}

bool FileKeychainStore::haveItemsMoved() {
    const Turn turn{*this};
    bool haveMoved = false;
    const auto status = onFile(turn, OnDamage::fail, [&](KeychainDatabase& database) {
        haveMoved = database.haveItemsMoved();
        return KeychainStatus::success;
    });
    return status == KeychainStatus::success && haveMoved;
}

std::shared_ptr<KeychainStore> makeFileKeychainStore(const std::string& path) {
    return std::make_shared<FileKeychainStore>(path);
}

}  // namespace Tarnwick_API::Platform
