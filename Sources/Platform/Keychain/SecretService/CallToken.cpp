#include <Platform/Keychain/SecretService/CallToken.hpp>

#include <Platform/Keychain/SecretService/SecretServiceError.hpp>

namespace Tarnwick_API::Platform {

void CallToken::throwIfGivenUp() const {
    if (isGivenUp()) {
        throw SecretServiceError{KeychainStatus::notAvailable, "given up"};
    }
}

void CallToken::cancel() noexcept {
    giveUp();
    g_cancellable_cancel(cancellable());
}

}  // namespace Tarnwick_API::Platform
