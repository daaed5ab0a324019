#pragma once

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
class ApiNotification {
public:
    enum Value {
        DidLogin,   ///< for applications; this library never posts it
        DidLogout,  ///< the session has ended, or could not begin
    };

    constexpr ApiNotification(Value value) noexcept : value_{value} {}
    constexpr operator Value() const noexcept { return value_; }

    /// "DidLogin" and "DidLogout", in this letter case; none for any other text.
    [[nodiscard]] static std::optional<ApiNotification> fromRawValue(std::string_view text) noexcept;
    [[nodiscard]] std::string_view rawValue() const noexcept;
    /// The name to register and post under: the raw value.
    [[nodiscard]] std::string name() const { return std::string{rawValue()}; }

private:
    Value value_;
};

static_assert(NotificationName<ApiNotification>);

}  // namespace Tarnwick_API

template <>
struct std::hash<Tarnwick_API::ApiNotification> {
    std::size_t operator()(Tarnwick_API::ApiNotification kind) const noexcept {
        return std::hash<std::string_view>{}(kind.rawValue());
    }
};
