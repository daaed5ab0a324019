#pragma once

#include <Tarnwick_API/Facade/ApiEnvironment.hpp>

#include <string>

namespace Tarnwick_API {

/// One host name per environment, without scheme and path. A port may follow after a colon ("localhost:8443").
class ApiUrl {
public:
    ApiUrl(std::string live, std::string beta, std::string dev, std::string staging)
        : live_{std::move(live)}, beta_{std::move(beta)}, dev_{std::move(dev)}, staging_{std::move(staging)} {}

    [[nodiscard]] const std::string& live() const noexcept { return live_; }
    [[nodiscard]] const std::string& beta() const noexcept { return beta_; }
    [[nodiscard]] const std::string& dev() const noexcept { return dev_; }
    [[nodiscard]] const std::string& staging() const noexcept { return staging_; }

    [[nodiscard]] const std::string& hostname(ApiEnvironment environment) const noexcept;

    /// "https://", the host name as it stands, "/vb".
    [[nodiscard]] std::string baseUrl(ApiEnvironment environment) const;

private:
    std::string live_;
    std::string beta_;
    std::string dev_;
    std::string staging_;
};

}  // namespace Tarnwick_API
