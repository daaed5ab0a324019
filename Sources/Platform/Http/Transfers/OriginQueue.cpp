#include <Platform/Http/Transfers/OriginQueue.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

std::string originKey(const Url& url) {
    const auto scheme = url.scheme();
    const auto host = url.host();
    auto port = url.port();
    if (port.empty()) {
        port = equalsIgnoringAsciiCase(scheme, "http") ? "80" : "443";
    }
    std::string key;
    key.reserve(scheme.size() + host.size() + port.size() + 4);
    key.append(scheme).append("://").append(host).append(":").append(port);
    std::transform(key.begin(), key.end(), key.begin(), asciiLower);
    return key;
}

}  // namespace Tarnwick_API::Platform
