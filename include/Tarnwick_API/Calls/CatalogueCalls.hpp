#pragma once

#include <Tarnwick_API/Calls/ApiCall.hpp>
#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/Server.hpp>
#include <Tarnwick_API/Records/ServerJsonKind.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// Lists countries. Coordinates, in degrees, are sent only as a pair.
class TARNWICK_API_EXPORT CountryCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<Country>;
    CountryCallV1(ApiBase base, std::int64_t filterId, std::optional<double> latitude = std::nullopt,
                  std::optional<double> longitude = std::nullopt);
    CountryCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t filterId,
                  std::optional<double> latitude = std::nullopt, std::optional<double> longitude = std::nullopt)
        : CountryCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, filterId, latitude, longitude} {}

    [[nodiscard]] std::int64_t filterId() const noexcept { return filterId_; }
    [[nodiscard]] std::optional<double> latitude() const noexcept { return latitude_; }
    [[nodiscard]] std::optional<double> longitude() const noexcept { return longitude_; }

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    std::int64_t filterId_;
    std::optional<double> latitude_;
    std::optional<double> longitude_;
};

/// Lists servers by filter, or reads one server. Coordinates, in degrees, are sent only as a pair.
class TARNWICK_API_EXPORT ServerCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<Server>;
    using SingleAnswer = Server;

    ServerCallV1(ApiBase base, std::int64_t filterId, std::optional<std::string> countryCode,
                 std::optional<double> latitude, std::optional<double> longitude, ServerJsonKind jsonKind);
    ServerCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t filterId,
                 std::optional<std::string> countryCode, std::optional<double> latitude,
                 std::optional<double> longitude, ServerJsonKind jsonKind)
        : ServerCallV1{ApiBase{environment, partnersId, std::move(baseUrl)},
                       filterId,
                       std::move(countryCode),
                       latitude,
                       longitude,
                       jsonKind} {}

    /// Without coordinates.
    ServerCallV1(ApiBase base, std::int64_t filterId, std::optional<std::string> countryCode, ServerJsonKind jsonKind)
        : ServerCallV1{std::move(base), filterId, std::move(countryCode), std::nullopt, std::nullopt, jsonKind} {}
    ServerCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t filterId,
                 std::optional<std::string> countryCode, ServerJsonKind jsonKind)
        : ServerCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, filterId, std::move(countryCode),
                       jsonKind} {}

    /// Servers that reach a content service, in the short form.
    ServerCallV1(ApiBase base, std::int64_t filterId, std::optional<std::string> countryCode,
                 std::optional<std::int64_t> serviceId);
    ServerCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t filterId,
                 std::optional<std::string> countryCode, std::optional<std::int64_t> serviceId)
        : ServerCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, filterId, std::move(countryCode),
                       serviceId} {}

    /// One server, in the long form.
    ServerCallV1(ApiBase base, std::int64_t id);
    ServerCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl, std::int64_t id)
        : ServerCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, id} {}

    /// Which form of record the answer holds.
    [[nodiscard]] ServerJsonKind jsonKind() const noexcept { return jsonKind_; }
    /// None of a call for one server, like all that follow.
    [[nodiscard]] std::optional<std::int64_t> filterId() const noexcept { return filterId_; }
    [[nodiscard]] const std::optional<std::string>& countryCode() const noexcept { return countryCode_; }
    [[nodiscard]] std::optional<double> latitude() const noexcept { return latitude_; }
    [[nodiscard]] std::optional<double> longitude() const noexcept { return longitude_; }
    [[nodiscard]] std::optional<std::int64_t> serviceId() const noexcept { return serviceId_; }

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
class TARNWICK_API_EXPORT DefaultFavoritesCallV1 final : public ApiCallV1 {
public:
    using Answer = std::vector<FavoriteEntry>;
    DefaultFavoritesCallV1(ApiBase base, std::int64_t filterId);
    DefaultFavoritesCallV1(ApiEnvironment environment, std::int64_t partnersId, std::string baseUrl,
                           std::int64_t filterId)
        : DefaultFavoritesCallV1{ApiBase{environment, partnersId, std::move(baseUrl)}, filterId} {}

    [[nodiscard]] std::int64_t filterId() const noexcept { return filterId_; }

protected:
    [[nodiscard]] Platform::Parameters ownParameters() const override;

private:
    std::int64_t filterId_;
};

}  // namespace Tarnwick_API
