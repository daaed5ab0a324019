#include <Platform/Http/Transfers/ConnectionTarget.hpp>

#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <optional>
#include <string_view>

namespace Tarnwick_API::Platform {

namespace {

/// Where `rule` leads connections for `url`; none when it is about another place.
std::optional<std::string_view> destination(std::string_view rule, const Url& url) {
    const bool isIpv6 = url.host().find(':') != std::string_view::npos;
    for (const auto part : {std::string_view{isIpv6 ? "[" : ""}, url.host(), std::string_view{isIpv6 ? "]:" : ":"},
                            url.port().empty() ? "443" : url.port(), std::string_view{":"}}) {
        if (!rule.starts_with(part)) {
            return std::nullopt;
        }
        rule.remove_prefix(part.size());
    }
    return rule;
}

}  // namespace

std::string connectionTarget(std::string_view urlText, const std::vector<std::string>& rules) {
    if (const auto url = rules.empty() ? std::nullopt : Url::fromString(urlText)) {
        for (const auto& rule : rules) {
            if (const auto target = destination(rule, *url)) {
                return std::string{"https://"}.append(*target);
            }
        }
    }
    return std::string{urlText};
}

}  // namespace Tarnwick_API::Platform
