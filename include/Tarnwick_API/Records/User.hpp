#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/Location.hpp>

#include <optional>
#include <string>

namespace Tarnwick_API {

/// The signed-in account.
struct TARNWICK_API_EXPORT User : ApiItem {
    std::string username;
    std::optional<std::string> email;
    bool active = false;
    /// None also when the service sends one that can't be read.
    std::optional<Location> location;

    [[nodiscard]] static User decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
