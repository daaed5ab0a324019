#include <Platform/Http/Caching/Freshness.hpp>

#include <Platform/Http/Caching/CacheControl.hpp>
#include <Platform/Http/Caching/HttpDate.hpp>
#include <Platform/Http/Caching/ResponseFields.hpp>

#include <algorithm>

namespace Tarnwick_API::Platform {

namespace {

using std::chrono::seconds;

/// The age that a response had already when it came.
WallTime::duration correctedInitialAge(const HttpResponse& response, const ExchangeTimes& times) {
    const auto zero = WallTime::duration::zero();
    const auto list = fieldValue(response, "age");
    const auto ageValue = parseDeltaSeconds(list.substr(0, list.find_first_of(", "))).value_or(seconds{0});
    const auto correctedAgeValue = ageValue + std::max(times.response - times.request, zero);
    const auto date = parseHttpDate(fieldValue(response, "date"), std::chrono::floor<seconds>(times.response));
    const auto apparentAge = date ? std::max(times.response - WallTime{*date}, zero) : zero;
    return std::max<WallTime::duration>(correctedAgeValue, apparentAge);
}

}  // namespace

std::optional<seconds> freshnessLifetime(const HttpResponse& response, WallTime responseTime) {
    if (const auto maxAge = parseCacheControl(fieldValue(response, "cache-control")).maxAge) {
        return maxAge;
    }
    if (response.headers.contains("expires")) {
        const auto now = std::chrono::floor<seconds>(responseTime);
        const auto expires = parseHttpDate(fieldValue(response, "expires"), now);
        const auto date = parseHttpDate(fieldValue(response, "date"), now).value_or(now);
        return expires ? *expires - date : seconds{0};
    }
    return std::nullopt;
}

seconds currentAge(const HttpResponse& response, const ExchangeTimes& times, WallTime now) {
    // A clock that was set back makes a response no younger than it was.
    const auto residentTime = std::max(now - times.response, WallTime::duration::zero());
    return std::chrono::floor<seconds>(correctedInitialAge(response, times) + residentTime);
}

}  // namespace Tarnwick_API::Platform
