#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <exception>
#include <string>
#include <utility>

#include <gio/gio.h>

namespace Tarnwick_API::Platform {

/// Why a call of the Secret Service ends before its end. Never leaves this module.
class SecretServiceError : public std::exception {
public:
    /// What there certainly is none of to talk to, or no answer from.
    enum class Missing { nothing, bus, service, collection, answer };

    /// `reason` is for the debug channel: no secret and no account is in it.
    SecretServiceError(KeychainStatus status, std::string reason, Missing missing = Missing::nothing)
        : reason_{std::move(reason)}, status_{status}, missing_{missing} {}

    /// From an error of libsecret or D-Bus. Their own words may quote attributes and are left out.
    [[nodiscard]] static SecretServiceError from(const GError* error, const char* action);
    /// From an error of a step with an item that was found before, which may be gone: `itemNotFound` then.
    [[nodiscard]] static SecretServiceError ofItem(const GError* error, const char* action);

    [[nodiscard]] const char* what() const noexcept override { return reason_.c_str(); }
    [[nodiscard]] KeychainStatus status() const noexcept { return status_; }
    [[nodiscard]] Missing missing() const noexcept { return missing_; }

private:
    std::string reason_;
    KeychainStatus status_;
    Missing missing_;
};

}  // namespace Tarnwick_API::Platform
