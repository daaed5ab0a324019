#include "RecordingKeychainStore.hpp"

#include <utility>

using Tarnwick_API::Platform::KeychainAnswer;
using Tarnwick_API::Platform::KeychainChanges;
using Tarnwick_API::Platform::KeychainItem;
using Tarnwick_API::Platform::KeychainQuery;
using Tarnwick_API::Platform::KeychainReturn;
using Tarnwick_API::Platform::KeychainStatus;

namespace {

std::string field(const std::string& name, const std::optional<std::string>& value) {
    return value ? " " + name + "=" + *value : "";
}

std::string flag(const std::string& name, bool set) {
    return set ? " " + name : "";
}

std::string textOf(const KeychainQuery& query) {
    return field("service", query.service) + field("account", query.account);
}

}  // namespace

RecordingKeychainStore::RecordingKeychainStore(std::shared_ptr<KeychainStore> store) : store_{std::move(store)} {
}

KeychainAnswer RecordingKeychainStore::copyMatching(const KeychainQuery& query, const KeychainReturn& wanted) {
    const auto failure = record("copyMatching", textOf(query) + flag("limitOne", wanted.limitOne) +
                                                    flag("attributes", wanted.attributes) + flag("data", wanted.data) +
                                                    flag("reference", wanted.persistentReference));
    if (answer_) {
        return *std::exchange(answer_, std::nullopt);
    }
    return failure ? KeychainAnswer{*failure, {}} : store_->copyMatching(query, wanted);
}

KeychainStatus RecordingKeychainStore::update(const KeychainQuery& target, const KeychainChanges& changes) {
    const auto failure = record("update", textOf(target) + " to" + field("account", changes.account) +
                                              field("data", changes.data) + field("comment", changes.comment));
    return failure ? *failure : store_->update(target, changes);
}

KeychainStatus RecordingKeychainStore::add(const KeychainItem& item) {
    std::string access = item.access.description + "[";
    for (const auto& path : item.access.trustedApplicationPaths) {
        access += path.value_or("self") + ";";
    }
    const auto failure =
        record("add", field("service", item.service) + field("account", item.account) + field("data", item.data) +
                          field("label", item.label) + field("accessible", item.accessibility) +
                          field("access", access + "]") + field("comment", item.comment));
    return failure ? *failure : store_->add(item);
}

KeychainStatus RecordingKeychainStore::remove(const KeychainQuery& target) {
    const auto failure = record("remove", textOf(target));
    return failure ? *failure : store_->remove(target);
}

std::optional<std::string> RecordingKeychainStore::message(KeychainStatus status) const {
    return hasMessages_ ? store_->message(status) : std::nullopt;
}

void RecordingKeychainStore::answerNext(KeychainAnswer answer) {
    answer_ = std::move(answer);
}

void RecordingKeychainStore::failNext(const std::string& operation, KeychainStatus status) {
    failures_[operation] = status;
}

void RecordingKeychainStore::giveNoMessages() {
    hasMessages_ = false;
}

std::vector<std::string> RecordingKeychainStore::takeCalls() {
    return std::exchange(calls_, {});
}

std::optional<KeychainStatus> RecordingKeychainStore::record(const std::string& operation,
                                                             const std::string& arguments) {
    calls_.push_back(operation + arguments);
    const auto failure = failures_.extract(operation);
    return failure ? std::optional{failure.mapped()} : std::nullopt;
}
