#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Storage/Keychain.hpp>

#include <Platform/Text/Wiping.hpp>
#include <Storage/CarefulKeychain.hpp>

#include <utility>

namespace Tarnwick_API {

std::optional<SessionError> ApiVersion1::adoptKeptToken() {
    auto kept = Keychain::keptLogin(keychainTokenService_);
    if (kept.data && !kept.data->isSignedOutPlaceholder()) {
        setOauthToken(OAuthToken{kept.data->username, kept.data->password});
        Platform::wipe(kept.data->password);
        return std::nullopt;
    }
    switch (kept.status) {
        case Platform::KeychainStatus::success:
            return SessionError{SessionError::nobodySignedIn};
        case Platform::KeychainStatus::interactionNotAllowed:
            return SessionError{SessionError::keychainLocked};
        default:
            return SessionError{SessionError::keychainUnavailable};
    }
}

Platform::KeychainStatus ApiVersion1::forgetToken() {
    setOauthToken(std::nullopt);
    const auto status = CarefulKeychain{}.remove({.service = keychainTokenService_});
    tokenKeeping_ = status == Platform::KeychainStatus::itemNotFound ? Platform::KeychainStatus::success : status;
    return *tokenKeeping_;
}

}  // namespace Tarnwick_API
