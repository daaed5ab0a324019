#include <Platform/Http/Origin.hpp>

#include <Platform/Application/AsciiCharacters.hpp>
#include <Platform/Http/HeaderFields.hpp>

#include <algorithm>

namespace Platform {

std::string originKey(const Url& url) {
    const auto scheme = url.scheme();
    const auto host = url.host();
    auto port = url.port();
    if (port.empty()) {
        port = isSameHeaderName(scheme, "http") ? "80" : "443";
    }
    std::string key;
    key.reserve(scheme.size() + host.size() + port.size() + 4);
    key.append(scheme).append("://").append(host).append(":").append(port);
    std::transform(key.begin(), key.end(), key.begin(), asciiLower);
    return key;
}

}  // namespace Platform
