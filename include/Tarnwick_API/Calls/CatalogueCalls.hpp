#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/Server.hpp>
#include <Tarnwick_API/Records/ServerJsonKind.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Tarnwick_API {

/// Lists countries. Coordinates, in degrees, are sent only as a pair.
class CountryCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<Country>;
    CountryCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t filterId,
                  std::optional<double> latitude = std::nullopt, std::optional<double> longitude = std::nullopt);

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    std::int64_t filterId_;
    std::optional<double> latitude_;
    std::optional<double> longitude_;
};

/// Lists servers by filter, or reads one server.
class ServerCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<Server>;
    using SingleAnswer = Server;

    ServerCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t filterId,
                 std::optional<std::string> countryCode, std::optional<double> latitude,
                 std::optional<double> longitude, ServerJsonKind jsonKind);

    /// Servers that reach a content service.
    ServerCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t filterId,
                 std::optional<std::string> countryCode, std::optional<std::int64_t> serviceId);

    /// One server, in the long form.
    ServerCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t id);

    /// Which form of record the answer holds.
    [[nodiscard]] ServerJsonKind jsonKind() const noexcept { return jsonKind_; }

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    ServerJsonKind jsonKind_;
    std::optional<std::int64_t> filterId_;
    std::optional<std::string> countryCode_;
    std::optional<double> latitude_;
    std::optional<double> longitude_;
    std::optional<std::int64_t> serviceId_;
};

/// Lists the default favourites, servers and countries mixed.
class DefaultFavoritesCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<FavoriteEntry>;
    DefaultFavoritesCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl,
                           std::int64_t filterId);

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    std::int64_t filterId_;
};

}  // namespace Tarnwick_API
