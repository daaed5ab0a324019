#pragma once

#include <Tarnwick_API/Calls/CancellationError.hpp>
#include <Tarnwick_API/Calls/LoginError.hpp>
#include <Tarnwick_API/Calls/ResponseError.hpp>
#include <Tarnwick_API/Calls/SessionError.hpp>
#include <Tarnwick_API/Calls/SignupError.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/DecodingError.hpp>
#include <Tarnwick_API/Records/JsonDecodeError.hpp>

#include <string_view>
#include <variant>

namespace Tarnwick_API {

/// Whatever an operation reports as having gone wrong: one value of a closed set of types.
class TARNWICK_API_EXPORT ApiError {
public:
    /// Any of the errors.
    using Value = std::variant<ResponseError, LoginError, SignupError, JsonDecodeError, Platform::DecodingError,
                               CancellationError, SessionError>;

    ApiError(ResponseError error) : value_{std::move(error)} {}
    ApiError(LoginError error) : value_{error} {}
    ApiError(SignupError error) : value_{error} {}
    ApiError(JsonDecodeError error) : value_{std::move(error)} {}
    ApiError(Platform::DecodingError error) : value_{std::move(error)} {}
    ApiError(CancellationError error) : value_{error} {}
    ApiError(SessionError error) : value_{error} {}

    /// A sentence that can be shown to users; English.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;

    /// The error when it is of type `T`, else null: `if (const auto* refused = error.as<LoginError>()) ...`.
    template <typename T>
    [[nodiscard]] const T* as() const noexcept {
        return std::get_if<T>(&value_);
    }

    /// For `std::visit`.
    [[nodiscard]] const Value& value() const noexcept { return value_; }

    friend bool operator==(const ApiError&, const ApiError&) = default;

private:
    Value value_;
};

}  // namespace Tarnwick_API
