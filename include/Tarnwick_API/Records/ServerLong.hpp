#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ServerConfiguration.hpp>
#include <Tarnwick_API/Records/ServerStatistics.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Tarnwick_API {

/// A server as a single look-up describes it.
struct TARNWICK_API_EXPORT ServerLong {
    /// Where the server is.
    struct Location {
        std::string countrycode;
        std::string language;
        std::optional<std::string> city;
    };
    /// Its load.
    using Statistics = ServerStatistics;
    /// A way of connecting to it.
    using Configuration = ServerConfiguration;

    /// Any number of 64 bits.
    std::int64_t id = 0;
    /// The server's internal name.
    std::string apiName;
    std::optional<std::string> displayName;
    std::string hostname;
    std::string ip;
    std::optional<std::string> ipv6;
    Location location;
    Statistics statistics;
    std::vector<Configuration> configurations;

    /// For logging.
    [[nodiscard]] std::string description() const;

    [[nodiscard]] static ServerLong decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
