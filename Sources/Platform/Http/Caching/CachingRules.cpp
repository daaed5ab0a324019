#include <Platform/Http/Caching/CachingRules.hpp>

#include <Platform/Http/Caching/Freshness.hpp>
#include <Platform/Http/Caching/ResponseFields.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <array>
#include <string_view>

namespace Tarnwick_API::Platform {

CacheControl requestDirectives(const RequestFields& fields) {
    auto directives = parseCacheControl(fields.value("Cache-Control"));
    if (fields.value("Cache-Control").empty() && equalsIgnoringAsciiCase(fields.value("Pragma"), "no-cache")) {
        directives.noCache = true;
    }
    return directives;
}

bool mayUseCache(const HttpRequest& request, const RequestFields& fields) {
    if (request.method() != HttpMethod::get || request.body() || requestDirectives(fields).noStore) {
        return false;
    }
    // Parts of a response, and questions that the host asks the server itself.
    static constexpr std::array<std::string_view, 6> names{
        "Range", "If-Match", "If-None-Match", "If-Modified-Since", "If-Unmodified-Since", "If-Range"};
    return std::all_of(names.begin(), names.end(), [&](auto name) { return fields.value(name).empty(); });
}

bool mayBeStored(const HttpResponse& response) {
    // The codes whose response is the whole thing asked for, so that nothing else has to be understood about them.
    const auto status = response.status;
    if (status != 200 && status != 203 && status != 204) {
        return false;
    }
    if (parseCacheControl(fieldValue(response, "cache-control")).noStore ||
        fieldValue(response, "vary").find('*') != std::string_view::npos) {
        return false;
    }
    return freshnessLifetime(response, {}).has_value() || hasValidator(response);
}

bool isSafe(HttpMethod method) noexcept {
    return method == HttpMethod::get || method == HttpMethod::head || method == HttpMethod::options ||
           method == HttpMethod::trace;
}

}  // namespace Tarnwick_API::Platform
