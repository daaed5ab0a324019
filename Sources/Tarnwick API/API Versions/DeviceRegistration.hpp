#pragma once

#include <Tarnwick_API/Platform/Application/Url.hpp>
#include <Tarnwick_API/Platform/Application/Uuid.hpp>
#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <optional>
#include <string>

namespace Tarnwick_API {

/// The version-2 request that registers this device for an account, complete but for its method, which this API
/// generation has not settled yet.
struct DeviceRegistration {
    Platform::Url url;
    Platform::Parameters parameters;
    Platform::HttpHeaders headers;
    Platform::ParameterEncoding encoding = Platform::ParameterEncoding::json;

    /// None when the base URL is none.
    [[nodiscard]] static std::optional<DeviceRegistration> prepare(const std::string& baseUrl,
                                                                   const std::string& consumerKey,
                                                                   const Platform::Uuid& device,
                                                                   const std::string& username,
                                                                   const std::string& password);
};

}  // namespace Tarnwick_API
