#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <optional>
#include <string>
#include <utility>

namespace Tarnwick_API {

/// The access token of a session, with its secret.
struct TARNWICK_API_EXPORT OAuthToken {
    /// The service's own name of the token; version 2 alone gives one.
    std::optional<std::string> id;
    std::string token;
    std::string secret;

    OAuthToken() = default;
    OAuthToken(std::string accessToken, std::string accessSecret)
        : token{std::move(accessToken)}, secret{std::move(accessSecret)} {}

    /// Reads the shape of version 2 when `decoder` is an `ApiJsonDecoder` of that version, otherwise that of version 1.
    [[nodiscard]] static OAuthToken decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
