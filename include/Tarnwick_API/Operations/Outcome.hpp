#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Export.hpp>

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

namespace Tarnwick_API {

/// Why an operation came to no value.
class Failure {
public:
    /// No error: the service answered, but without usable data.
    explicit Failure(std::optional<ApiError> error) : error_{std::move(error)} {}

    /// None when the service answered without usable data.
    [[nodiscard]] const std::optional<ApiError>& error() const noexcept { return error_; }

    /// The error when it is of type `T`, else null.
    template <typename T>
    [[nodiscard]] const T* as() const noexcept {
        return error_ ? error_->as<T>() : nullptr;
    }

    /// A sentence that can be shown to users; English.
    [[nodiscard]] std::string_view localizedDescription() const noexcept {
        return error_ ? error_->localizedDescription() : "The service gave no usable answer.";
    }

    friend bool operator==(const Failure&, const Failure&) = default;

private:
    std::optional<ApiError> error_;
};

/// What `Outcome::value` throws where there is none.
class TARNWICK_API_EXPORT OperationFailed final : public std::runtime_error {
public:
    explicit OperationFailed(Failure failure)
        : std::runtime_error{std::string{failure.localizedDescription()}}, failure_{std::move(failure)} {}

    [[nodiscard]] const Failure& failure() const noexcept { return failure_; }

private:
    Failure failure_;
};

/// What an operation came to: a value or a failure. That there is neither result nor error, which a completion can be
/// told, is a failure here, so that nobody overlooks it.
template <typename T>
class [[nodiscard]] Outcome {
    using Value = std::conditional_t<std::is_void_v<T>, std::monostate, T>;

public:
    explicit Outcome(Value value) : content_{std::in_place_index<0>, std::move(value)} {}
    explicit Outcome(Failure failure) : content_{std::in_place_index<1>, std::move(failure)} {}

    [[nodiscard]] bool hasValue() const noexcept { return content_.index() == 0; }
    [[nodiscard]] explicit operator bool() const noexcept { return hasValue(); }

    /// The value. Throws `OperationFailed` where there is none.
    const Value& value() const& {
        throwWithoutValue();
        return std::get<0>(content_);
    }
    /// By value: `for (const auto& server : (co_await operation).value())` would walk what is gone otherwise.
    Value value() && {
        throwWithoutValue();
        return std::get<0>(std::move(content_));
    }

    const Value& operator*() const& { return value(); }
    Value operator*() && { return std::move(*this).value(); }
    const Value* operator->() const { return &value(); }

    /// Why there is no value. Throws std::bad_variant_access where there is one.
    [[nodiscard]] const Failure& failure() const { return std::get<1>(content_); }

private:
    void throwWithoutValue() const {
        if (!hasValue()) {
            throw OperationFailed{failure()};
        }
    }

    std::variant<Value, Failure> content_;
};

}  // namespace Tarnwick_API
