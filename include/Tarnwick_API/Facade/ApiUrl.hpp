#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiEnvironment.hpp>

#include <optional>
#include <string>
#include <utility>

namespace Tarnwick_API {

/// The same host names by name: `ApiUrl{{.live = "api.example.com"}}`. An environment that is never chosen needs none.
struct ApiHosts {
    std::string live = {};
    std::string beta = {};
    std::string dev = {};
    std::string staging = {};
};

/// One host name per environment, without scheme and path. A port may follow after a colon ("localhost:8443").
class TARNWICK_API_EXPORT ApiUrl {
public:
    explicit ApiUrl(ApiHosts hosts) : hosts_{std::move(hosts)} {}
    ApiUrl(std::string live, std::string beta, std::string dev, std::string staging)
        : hosts_{std::move(live), std::move(beta), std::move(dev), std::move(staging)} {}

    [[nodiscard]] const std::string& live() const noexcept { return hosts_.live; }
    [[nodiscard]] const std::string& beta() const noexcept { return hosts_.beta; }
    [[nodiscard]] const std::string& dev() const noexcept { return hosts_.dev; }
    [[nodiscard]] const std::string& staging() const noexcept { return hosts_.staging; }

    /// The host name as it was given; empty for an environment without one.
    [[nodiscard]] const std::string& hostname(ApiEnvironment environment) const noexcept;

    /// "https://", the host name as it stands, "/vb".
    [[nodiscard]] std::string baseUrl(ApiEnvironment environment) const;

    /// What is wrong with the host name, an English sentence for developers; none when requests can be made with it.
    /// Ask before the first request: with a name that makes no URL that ends the process, others make the service
    /// unreachable.
    [[nodiscard]] std::optional<std::string> fault(ApiEnvironment environment) const;

private:
    ApiHosts hosts_;
};

}  // namespace Tarnwick_API
