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
    /// `reason` is for the debug channel: no secret and no account is in it. `isOffered` is false when there certainly
    /// is none to talk to.
    SecretServiceError(KeychainStatus status, std::string reason, bool isOffered = true)
        : reason_{std::move(reason)}, status_{status}, isOffered_{isOffered} {}

    /// From an error of libsecret or D-Bus. Their own words may quote attributes and are left out.
    [[nodiscard]] static SecretServiceError from(const GError* error, const char* action);
    /// From an error of a step with an item that was found before, which may be gone: `itemNotFound` then.
    [[nodiscard]] static SecretServiceError ofItem(const GError* error, const char* action);

    [[nodiscard]] const char* what() const noexcept override { return reason_.c_str(); }
    [[nodiscard]] KeychainStatus status() const noexcept { return status_; }
    [[nodiscard]] bool isOffered() const noexcept { return isOffered_; }

private:
    std::string reason_;
    KeychainStatus status_;
    bool isOffered_;
};

}  // namespace Tarnwick_API::Platform
