#pragma once

#include <Tarnwick_API/Export.hpp>

#include <concepts>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// The service's own texts about a sign-in or the application's credentials.
enum class TARNWICK_API_EXPORT LoginResponseType {
    loginRequired,
    invalidConsumerRights,
    invalidConsumerKey,
    consumerKeyMissing
};

/// The text of a case, such as "NOT LOGGED IN".
[[nodiscard]] TARNWICK_API_EXPORT std::string_view rawValue(LoginResponseType type) noexcept;

/// The case whose text is exactly `text`; none for any other, letter case included.
template <std::same_as<LoginResponseType> Enumeration>
[[nodiscard]] TARNWICK_API_EXPORT std::optional<Enumeration> fromRawValue(std::string_view text) noexcept;

/// Why a sign-in failed. Compares with its own kind alone: `error == LoginError::noOauthToken`.
class TARNWICK_API_EXPORT LoginError {
public:
    enum class Value {
        loginRequired,            ///< the service knows no such session
        invalidConsumerRights,    ///< the application may not do this
        invalidConsumerKey,       ///< the application's key is wrong
        consumerKeyMissing,       ///< the application's key is missing or wrong
        noOauthToken,             ///< the answer held no token
        qvUserMigrationRequired,  ///< the account must be moved from the legacy system first
    };
    using enum Value;

    constexpr LoginError(Value value) noexcept : value_{value} {}
    /// For `switch`.
    [[nodiscard]] constexpr Value value() const noexcept { return value_; }

    /// Recognises an answer by how it begins, whatever its letter case; none when it says nothing about a sign-in.
    [[nodiscard]] static std::optional<LoginError> from(std::string_view responseText);

    /// The service's text for this case; empty for the two that it has none for.
    [[nodiscard]] std::string_view responseText() const noexcept;

    /// For users; English.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;

    friend constexpr bool operator==(const LoginError&, const LoginError&) = default;

private:
    Value value_;
};

}  // namespace Tarnwick_API
