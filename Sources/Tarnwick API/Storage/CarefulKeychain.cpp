#include <Storage/CarefulKeychain.hpp>

#include <Tarnwick_API/Storage/Keychain.hpp>

#include <Platform/Logging/DebugChannel.hpp>

#include <utility>

namespace Tarnwick_API {

namespace {

using Platform::KeychainAnswer;
using Platform::KeychainStatus;

template <typename Answer, typename Ask>
Answer unlessItThrows(Answer otherwise, const Ask& ask) {
    try {
        return ask();
    } catch (...) {
        Platform::DebugChannel::writeException("Keychain: the host's store has failed", "Keychain");
    }
    return otherwise;
}

}  // namespace

CarefulKeychain::CarefulKeychain() : store_{Keychain::store()} {
}

KeychainAnswer CarefulKeychain::copyMatching(const Platform::KeychainQuery& query,
                                             const Platform::KeychainReturn& wanted) const {
    return unlessItThrows(KeychainAnswer{KeychainStatus::notAvailable, {}},
                          [&] { return store_->copyMatching(query, wanted); });
}

KeychainStatus CarefulKeychain::update(const Platform::KeychainQuery& target,
                                       const Platform::KeychainChanges& changes) const {
    return unlessItThrows(KeychainStatus::notAvailable, [&] { return store_->update(target, changes); });
}

KeychainStatus CarefulKeychain::add(const Platform::KeychainItem& item) const {
    return unlessItThrows(KeychainStatus::notAvailable, [&] { return store_->add(item); });
}

KeychainStatus CarefulKeychain::remove(const Platform::KeychainQuery& target) const {
    return unlessItThrows(KeychainStatus::notAvailable, [&] { return store_->remove(target); });
}

std::optional<std::string> CarefulKeychain::message(KeychainStatus status) const {
    return unlessItThrows(std::optional<std::string>{}, [&] { return store_->message(status); });
}

}  // namespace Tarnwick_API
