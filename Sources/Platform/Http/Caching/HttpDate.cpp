#include <Platform/Http/Caching/HttpDate.hpp>

#include <string>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

std::optional<std::chrono::sys_seconds> parseHttpDate(std::string_view text) {
    // libcurl reads a lone number as a year or a day, and a list of dates as one; all three formats have a time of day.
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || text.find(':', colon + 4) != std::string_view::npos) {
        return std::nullopt;
    }
    const auto seconds = curl_getdate(std::string{text}.c_str(), nullptr);
    if (seconds == -1) {
        return std::nullopt;
    }
    return std::chrono::sys_seconds{std::chrono::seconds{seconds}};
}

}  // namespace Tarnwick_API::Platform
