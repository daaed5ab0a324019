#pragma once

#include <Tarnwick_API/Export.hpp>

#include <cstddef>
#include <exception>
#include <functional>
#include <string_view>

namespace Tarnwick_API {

/// A text of an answer can't be converted to the number that it stands for.
class TARNWICK_API_EXPORT JsonDecodeError final : public std::exception {
public:
    enum class Case { IntParsingFailed };
    using enum Case;

    // NOLINTNEXTLINE(google-explicit-constructor): a case is the whole of the error
    JsonDecodeError(Case value) noexcept : value_{value} {}

    [[nodiscard]] Case value() const noexcept { return value_; }
    [[nodiscard]] std::string_view localizedDescription() const noexcept { return what(); }
    [[nodiscard]] const char* what() const noexcept override { return "The value cannot be converted to an Int"; }

    friend bool operator==(const JsonDecodeError& a, const JsonDecodeError& b) noexcept { return a.value_ == b.value_; }

private:
    Case value_;
};

}  // namespace Tarnwick_API

template <>
struct std::hash<Tarnwick_API::JsonDecodeError> {
    std::size_t operator()(const Tarnwick_API::JsonDecodeError& error) const noexcept {
        return std::hash<Tarnwick_API::JsonDecodeError::Case>{}(error.value());
    }
};
