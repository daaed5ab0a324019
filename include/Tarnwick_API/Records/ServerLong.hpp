#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ServerConfiguration.hpp>
#include <Tarnwick_API/Records/ServerStatistics.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tarnwick_API {

/// A server as a single look-up describes it.
///
/// `Text` is `std::string`; or `std::string_view`, for who keeps only a part: the texts then stay where they were
/// parsed, and are valid while the `Platform::JsonDocument` lives.
template <typename Text>
struct TARNWICK_API_EXPORT BasicServerLong {
    /// Where the server is.
    struct Location {
        Text countrycode;
        Text language;
        std::optional<Text> city;
    };
    /// Its load.
    using Statistics = ServerStatistics;
    /// A way of connecting to it.
    using Configuration = ServerConfiguration;

    /// Any number of 64 bits.
    std::int64_t id = 0;
    /// The server's internal name.
    Text apiName;
    std::optional<Text> displayName;
    Text hostname;
    Text ip;
    std::optional<Text> ipv6;
    Location location;
    Statistics statistics;
    std::vector<Configuration> configurations;

    /// For logging.
    [[nodiscard]] std::string description() const;

    [[nodiscard]] static BasicServerLong decode(const Platform::JsonObject& object,
                                                const Platform::JsonDecoder& decoder);
};

extern template struct TARNWICK_API_EXPORT BasicServerLong<std::string>;
extern template struct TARNWICK_API_EXPORT BasicServerLong<std::string_view>;

/// The one that keeps its texts.
using ServerLong = BasicServerLong<std::string>;

}  // namespace Tarnwick_API
