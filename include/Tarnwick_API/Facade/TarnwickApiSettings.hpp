#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiEnvironment.hpp>
#include <Tarnwick_API/Facade/ApiUrl.hpp>
#include <Tarnwick_API/Facade/ApiVersion.hpp>
#include <Tarnwick_API/Facade/FilterIds.hpp>
#include <Tarnwick_API/Facade/RetrySpread.hpp>
#include <Tarnwick_API/Platform/Application/Uuid.hpp>

#include <cstdint>
#include <string>
#include <vector>

namespace Tarnwick_API {

/// What a `TarnwickApi` is made of, by name:
///
///     const auto api = TarnwickApi::create({.consumerKey = key,
///                                           .consumerSecret = secret,
///                                           .partnersId = 7,
///                                           .uuid = installation,
///                                           .keychainService = "example-vpn",
///                                           .filterIds = {.generalCountriesAll = 12, .generalServersPerCountry = 14},
///                                           .apiUrl = {.live = "api.example.com"}});
struct TARNWICK_API_EXPORT TarnwickApiSettings {
    /// The application's credentials with the service.
    std::string consumerKey = {};
    std::string consumerSecret = {};
    /// The application's number with the service.
    std::int64_t partnersId = 0;
    /// Identifies this installation: make it once (`Platform::Uuid::random`) and keep it between runs. It has no
    /// default, as a fresh one in each run would fill the account's list of devices.
    Platform::Uuid uuid;
    /// The name under which the access token is kept in the keychain.
    std::string keychainService = {};
    FilterIdNumbers filterIds = {};
    ApiHosts apiUrl = {};
    /// Holds from the first request on.
    ApiEnvironment environment = ApiEnvironment::live;
    bool useFallbackIp = false;
    ApiVersion apiVersion = ApiVersion::v1;
    /// Off, unless it has a share. An application with very many users had better take 0.5: after an outage they come
    /// back as an even stream, instead of second by second at once.
    RetrySpread retrySpread = {};

    /// What an application forgot or mistook, an English sentence for developers each: credentials, the keychain's
    /// name, the host of `environment`, and the share of `retrySpread`. Empty when there is nothing to say.
    /// `TarnwickApi::create` tells the same on the debug channel and goes on, as not every application needs each of
    /// them. Ids of filters are not judged.
    [[nodiscard]] std::vector<std::string> faults() const;
};

}  // namespace Tarnwick_API
