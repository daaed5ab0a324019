#include "RedirectedReachability.hpp"

#include <Tarnwick_API/Platform/Url.hpp>

namespace TarnwickClient {

bool RedirectedReachability::isReachable(std::string_view urlText) const {
    const auto url = Platform::Url::fromString(urlText);
    if (!url) {
        return reachability_->isReachable(urlText);
    }
    const std::string bracket = url->host().find(':') == std::string_view::npos ? "" : "[";
    const auto host = bracket + std::string{url->host()} + (bracket.empty() ? "" : "]");
    const auto source = host + ":" + (url->port().empty() ? "443" : std::string{url->port()}) + ":";
    for (const auto& rule : rules_) {
        if (rule.starts_with(source)) {
            return reachability_->isReachable("https://" + rule.substr(source.size()));
        }
    }
    return reachability_->isReachable(urlText);
}

}  // namespace TarnwickClient
