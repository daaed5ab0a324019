#include <Calls/BaseUrlFault.hpp>

#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <algorithm>
#include <string_view>

namespace Tarnwick_API {

namespace {

std::string sentence(const std::string& baseUrl, std::string_view fault) {
    std::string text = "the base URL \"";
    return text.append(baseUrl).append("\" ").append(fault);
}

/// The URL that consists of what `url` has of a base URL.
std::string rebuilt(const Platform::Url& url) {
    const bool isIpv6 = url.host().find(':') != std::string_view::npos;
    std::string text = "https://";
    text.append(isIpv6 ? "[" : "").append(url.host()).append(isIpv6 ? "]" : "");
    if (!url.port().empty()) {
        text.append(":").append(url.port());
    }
    return text.append("/vb");
}

}  // namespace

std::optional<std::string> baseUrlFault(const std::string& baseUrl) {
    const auto url = Platform::Url::fromString(baseUrl);
    if (!url) {
        return sentence(baseUrl, "is no URL");
    }
    if (url->host().empty()) {
        return sentence(baseUrl, "names no host");
    }
    const auto port = url->port();
    if (rebuilt(*url) != baseUrl ||
        !std::all_of(port.begin(), port.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return sentence(baseUrl, "has more in it than a host and a port");
    }
    return std::nullopt;
}

}  // namespace Tarnwick_API
