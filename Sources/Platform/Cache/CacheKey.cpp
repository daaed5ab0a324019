#include <Platform/Cache/CacheKey.hpp>

#include <Platform/Text/AsciiCharacters.hpp>

#include <algorithm>
#include <string_view>

namespace Tarnwick_API::Platform {

std::string cacheKey(const HttpRequest& request) {
    const std::string_view url = request.url().absoluteString();
    const auto method = name(request.method());
    std::string key;
    key.reserve(method.size() + 1 + url.size());
    key.append(method).append(" ");
    const auto begin = key.size();
    key.append(url.substr(0, url.find('#')));
    for (const auto part : {request.url().scheme(), request.url().host()}) {
        if (!part.empty()) {
            const auto first = key.begin() + static_cast<std::ptrdiff_t>(begin) + (part.data() - url.data());
            std::transform(part.begin(), part.end(), first, asciiLower);
        }
    }
    return key;
}

}  // namespace Tarnwick_API::Platform
