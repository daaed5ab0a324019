#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include "Failures/ExitStatus.hpp"

#include <stdexcept>
#include <string>
#include <string_view>

namespace TarnwickClient {

/// Why a command did not come to its result: a sentence for people, a word for programs and the exit status.
class Failure : public std::runtime_error {
public:
    Failure(ExitStatus status, std::string kind, const std::string& message, std::string serviceText = {})
        : std::runtime_error{message}, status_{status}, kind_{std::move(kind)}, serviceText_{std::move(serviceText)} {}

    /// `transportError`: what the connection's last failure was, if there was one.
    [[nodiscard]] static Failure from(const Tarnwick_API::ApiError& error, std::string_view transportError);

    [[nodiscard]] static Failure usage(const std::string& message) { return {ExitStatus::usage, "usage", message}; }
    [[nodiscard]] static Failure local(const std::string& message) { return {ExitStatus::local, "local", message}; }
    [[nodiscard]] static Failure notSignedIn() {
        return {ExitStatus::notSignedIn, "notSignedIn", "Not signed in. Sign in with: tarnwick login"};
    }

    /// The keychain did not do what it was asked for.
    [[nodiscard]] static Failure keychain(Tarnwick_API::Platform::KeychainStatus status);
    /// As above, after an attempt to unlock it.
    [[nodiscard]] static Failure unlocking(Tarnwick_API::Platform::KeychainStatus status);

    [[nodiscard]] ExitStatus status() const noexcept { return status_; }
    /// Such as "unauthorized"; stays the same between versions.
    [[nodiscard]] const std::string& kind() const noexcept { return kind_; }
    /// The service's own words, empty when it had none.
    [[nodiscard]] const std::string& serviceText() const noexcept { return serviceText_; }

private:
    ExitStatus status_;
    std::string kind_;
    std::string serviceText_;
};

/// Whether the service says that it does not know the session any more.
[[nodiscard]] bool isSessionEnded(const Tarnwick_API::ApiError& error);

}  // namespace TarnwickClient
