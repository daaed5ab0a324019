#pragma once

#include <Tarnwick_API/Export.hpp>

#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API {

/// A kind of notification that has a name on the notification centre.
template <typename T>
concept NotificationName = requires(const T& kind) {
    { kind.name() } -> std::convertible_to<std::string>;
};

/// What this library and applications announce about the session, with the facade as sender.
class TARNWICK_API_EXPORT ApiNotification {
public:
    enum class Value {
        DidLogin,   ///< for applications; this library never posts it
        DidLogout,  ///< the session has ended, or could not begin
    };
    using enum Value;

    constexpr ApiNotification(Value value) noexcept : value_{value} {}
    /// For `switch`.
    [[nodiscard]] constexpr Value value() const noexcept { return value_; }
    /// The name to register and post under: the raw value.
    [[nodiscard]] std::string name() const;

    friend constexpr bool operator==(const ApiNotification&, const ApiNotification&) = default;

private:
    Value value_;
};

/// "DidLogin" or "DidLogout".
[[nodiscard]] constexpr std::string_view rawValue(ApiNotification kind) noexcept {
    return kind == ApiNotification::DidLogin ? "DidLogin" : "DidLogout";
}

/// The kind of exactly that name; none for any other text, the same in other letter case included.
template <std::same_as<ApiNotification> Enumeration>
[[nodiscard]] constexpr std::optional<Enumeration> fromRawValue(std::string_view text) noexcept {
    if (text == "DidLogin") {
        return Enumeration{Enumeration::DidLogin};
    }
    return text == "DidLogout" ? std::optional{Enumeration{Enumeration::DidLogout}} : std::nullopt;
}

inline std::string ApiNotification::name() const {
    return std::string{rawValue(*this)};
}

static_assert(NotificationName<ApiNotification>);

}  // namespace Tarnwick_API

template <>
struct std::hash<Tarnwick_API::ApiNotification> {
    std::size_t operator()(Tarnwick_API::ApiNotification kind) const noexcept {
        return std::hash<std::string_view>{}(rawValue(kind));
    }
};
