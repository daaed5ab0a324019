#pragma once

#include <Tarnwick_API/Export.hpp>

#include <string_view>

namespace Tarnwick_API {

/// Why an account was not created. Compares with its own kind alone.
class TARNWICK_API_EXPORT SignupError {
public:
    /// The kinds. This library reports the second one alone.
    enum class Value { undefined, usernameAlreadyExists };
    using enum Value;

    constexpr SignupError(Value value) noexcept : value_{value} {}
    /// For `switch`.
    [[nodiscard]] constexpr Value value() const noexcept { return value_; }

    /// For users; English.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;

    friend constexpr bool operator==(const SignupError&, const SignupError&) = default;

private:
    Value value_;
};

}  // namespace Tarnwick_API
