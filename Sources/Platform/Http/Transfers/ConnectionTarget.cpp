#include <Platform/Http/Transfers/ConnectionTarget.hpp>

#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <optional>

namespace Tarnwick_API::Platform {

namespace {

/// How a rule names the place that connections for `url` would go to.
std::string ruleSource(const Url& url) {
    const bool isIpv6 = url.host().find(':') != std::string_view::npos;
    std::string source;
    source.append(isIpv6 ? "[" : "").append(url.host()).append(isIpv6 ? "]:" : ":");
    return source.append(url.port().empty() ? "443" : url.port()).append(":");
}

}  // namespace

std::string connectionTarget(std::string_view urlText, const std::vector<std::string>& rules) {
    if (const auto url = rules.empty() ? std::nullopt : Url::fromString(urlText)) {
        const auto source = ruleSource(*url);
        for (const auto& rule : rules) {
            if (rule.starts_with(source)) {
                return "https://" + rule.substr(source.size());
            }
        }
    }
    return std::string{urlText};
}

}  // namespace Tarnwick_API::Platform
