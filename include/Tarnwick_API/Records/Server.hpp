#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>
#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/CountryNameable.hpp>
#include <Tarnwick_API/Records/FavoriteItem.hpp>
#include <Tarnwick_API/Records/LocationType.hpp>
#include <Tarnwick_API/Records/ServerConfiguration.hpp>
#include <Tarnwick_API/Records/ServerJsonKind.hpp>
#include <Tarnwick_API/Records/ServerLong.hpp>
#include <Tarnwick_API/Records/ServerShort.hpp>
#include <Tarnwick_API/Records/ServerStatistics.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tarnwick_API {

/// A server, however the service described it.
struct TARNWICK_API_EXPORT Server : ApiItem, CountryNameable {
    /// Where the server is.
    struct Location {
        std::string countrycode;
        std::string language;
        std::optional<std::string> city;
        /// In the service's own unit. May be NaN, infinite, negative or huge where the service writes it so, as may the
        /// coordinates.
        std::optional<double> distance;
        /// Degrees.
        std::optional<double> latitude;
        std::optional<double> longitude;
    };
    /// Its load.
    using Statistics = ServerStatistics;
    /// A way of connecting to it.
    using Configuration = ServerConfiguration;

    /// The display name, or else the internal one.
    std::string name;
    std::string ip;
    /// Empty when the source has none.
    std::string hostname;
    Location location;
    Statistics statistics;
    /// Empty when the source has none.
    std::vector<Configuration> configurations;
    std::optional<LocationType> type;

    Server() = default;
    explicit Server(ServerShort&& server) noexcept;
    /// Copies the texts that it keeps.
    explicit Server(BasicServerShort<std::string_view>&& server);
    explicit Server(ServerLong&& server) noexcept;
    /// Copies the texts that it keeps.
    explicit Server(BasicServerLong<std::string_view>&& server);
    explicit Server(FavoriteItem item) noexcept;

    /// The country's name in the user's language; empty for an unknown code.
    [[nodiscard]] std::string localizedCountryName() const;

    /// For logging.
    [[nodiscard]] std::string description() const;
};

static_assert(CountryNamed<Server>);

/// The server that the bytes describe in that shape. Throws `Platform::DecodingError` or `JsonDecodeError`.
[[nodiscard]] TARNWICK_API_EXPORT Server decodeServer(const Platform::Bytes& bytes, ServerJsonKind kind);

/// The servers of a list, in its order; one bad element fails them all. Throws as `decodeServer` does.
[[nodiscard]] TARNWICK_API_EXPORT std::vector<Server> decodeServers(const Platform::Bytes& bytes, ServerJsonKind kind);

}  // namespace Tarnwick_API
