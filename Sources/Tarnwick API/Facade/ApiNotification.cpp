#include <Tarnwick_API/Facade/ApiNotification.hpp>

namespace Tarnwick_API {

std::optional<ApiNotification> ApiNotification::fromRawValue(std::string_view text) noexcept {
    for (const ApiNotification kind : {DidLogin, DidLogout}) {
        if (kind.rawValue() == text) {
            return kind;
        }
    }
    return std::nullopt;
}

std::string_view ApiNotification::rawValue() const noexcept {
    return value_ == DidLogin ? "DidLogin" : "DidLogout";
}

}  // namespace Tarnwick_API
