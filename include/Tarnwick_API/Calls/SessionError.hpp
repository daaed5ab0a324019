#pragma once

#include <Tarnwick_API/Export.hpp>

#include <string_view>

namespace Tarnwick_API {

/// Why no session could be restored. Compares with its own kind alone.
class TARNWICK_API_EXPORT SessionError {
public:
    enum class Value {
        nobodySignedIn,       ///< the keychain has no access token, or what a sign-out leaves in its place
        keychainLocked,       ///< `Keychain::unlock` asks the user to unlock it
        keychainUnavailable,  ///< it can't be read; `Keychain::store()->state()` says why
    };
    using enum Value;

    constexpr SessionError(Value value) noexcept : value_{value} {}
    /// For `switch`.
    [[nodiscard]] constexpr Value value() const noexcept { return value_; }

    /// For users; English.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;

    friend constexpr bool operator==(const SessionError&, const SessionError&) = default;

private:
    Value value_;
};

}  // namespace Tarnwick_API
