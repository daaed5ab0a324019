#include <Tarnwick_API/Records/User.hpp>

#include <cstdint>

namespace Tarnwick_API {

namespace {

/// The location is worth less than the user, so nothing wrong with it is an error.
std::optional<Location> readableLocation(const Platform::JsonObject& user, const Platform::JsonDecoder& decoder) {
    const auto member = user.find("location");
    const auto object = member ? member->object() : std::nullopt;
    if (!object) {
        return std::nullopt;
    }
    try {
        return Location::decode(*object, decoder);
    } catch (const Platform::DecodingError&) {
        return std::nullopt;
    }
}

}  // namespace

User User::decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder) {
    User user;
    user.id = object.require<std::int64_t>("id");
    user.username = object.require<std::string>("user_name");
    user.active = object.require<std::int64_t>("active") == 1;
    user.location = readableLocation(object, decoder);
    user.email = object.ifPresent<std::string>("user_email");
    return user;
}

}  // namespace Tarnwick_API
