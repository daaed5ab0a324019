#pragma once

#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <chrono>
#include <optional>

namespace Tarnwick_API::Platform {

/// When a request went to the server and when its response came.
struct ExchangeTimes {
    WallTime request;
    WallTime response;
};

/// How long the response is fresh from the moment when the server made it; none when it doesn't say, as nothing is
/// guessed.
[[nodiscard]] std::optional<std::chrono::seconds> freshnessLifetime(const HttpResponse& response,
                                                                    WallTime responseTime);

/// The time since the server made or validated the response, by what it says itself and by the clock here.
[[nodiscard]] std::chrono::seconds currentAge(const HttpResponse& response, const ExchangeTimes& times, WallTime now);

}  // namespace Tarnwick_API::Platform
