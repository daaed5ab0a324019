#pragma once

#include <Tarnwick_API/Platform/HttpSession.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace TarnwickClient {

/// Judges a host that connections are led away from by the place that they are led to.
class RedirectedReachability final : public Platform::Reachability {
public:
    /// `rules`: as `Platform::HttpSessionConfiguration::connectTo`.
    RedirectedReachability(std::shared_ptr<const Platform::Reachability> reachability, std::vector<std::string> rules)
        : reachability_{std::move(reachability)}, rules_{std::move(rules)} {}

    [[nodiscard]] bool isReachable(std::string_view urlText) const override;

private:
    std::shared_ptr<const Platform::Reachability> reachability_;
    std::vector<std::string> rules_;
};

}  // namespace TarnwickClient
