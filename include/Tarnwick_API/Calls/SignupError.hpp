#pragma once

#include <string_view>

namespace Tarnwick_API {

/// Why an account was not created.
class SignupError {
public:
    enum Value { undefined, usernameAlreadyExists };

    constexpr SignupError(Value value) noexcept : value_{value} {}
    constexpr operator Value() const noexcept { return value_; }

    /// For users; English.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;

private:
    Value value_;
};

}  // namespace Tarnwick_API
