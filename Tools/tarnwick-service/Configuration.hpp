#pragma once

#include "Certificates/Certificates.hpp"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace TarnwickService {

/// The numbers under which the service keeps its server-side filters. A client must be given the same ones.
struct FilterIds {
    std::int64_t smartServersCandidates = 11;
    std::int64_t generalCountriesAll = 12;
    std::int64_t generalServersCandidatesPerCountry = 13;
    std::int64_t generalServersPerCountry = 14;
    std::int64_t downloadingCountriesAll = 22;
    std::int64_t downloadingServersCandidatesPerCountry = 23;
    std::int64_t streamingCountriesAll = 32;
    std::int64_t streamingServersCandidatesPerCountry = 33;
    std::int64_t defaultFavorites = 41;
};

struct Configuration {
    std::string consumerKey = "tarnwick-demo-key";
    std::string consumerSecret = "tarnwick-demo-secret";
    /// A key with the same secret whose application may read the status and nothing else.
    std::string restrictedConsumerKey = "tarnwick-restricted-key";
    std::int64_t partnersId = 7;

    /// What the "Host" header must say, also on connections that came in by address. Empty: "localhost:PORT".
    std::string apiHost{};
    std::string address = "127.0.0.1";
    /// 0 takes a free port.
    std::uint16_t port = 0;
    /// Port of the plain-HTTP control interface on 127.0.0.1; 0 takes a free one, none leaves the interface out.
    std::optional<std::uint16_t> controlPort{};

    /// Names and addresses that the certificate vouches for besides localhost, 127.0.0.1, ::1 and the API host.
    std::vector<std::string> certificateNames{};
    /// Shown to clients instead of one from the service's own authority.
    std::optional<Certificate> certificate{};

    std::size_t serverCount = 1000;
    FilterIds filterIds{};
    /// Where the table of places is read from (package tzdata).
    std::filesystem::path zoneDirectory = "/usr/share/zoneinfo";
    /// How long a client may reuse a catalogue answer; 0 makes it ask each time.
    std::chrono::seconds catalogueMaxAge{0};

    /// The public address that every caller appears to have, and the zone that names its place.
    std::string callerAddress = "198.51.100.23";
    std::string callerZone = "Europe/Berlin";
    std::string minimumClientVersion = "7.0.0";
    std::chrono::seconds statusUpdateInterval{600};

    /// Refuses every deviation from the wire format, also the ones that a forgiving service would overlook: the order
    /// and the escaping of parameters, headers that do not belong, parameters that an operation does not know.
    bool strict = true;
    /// Keeps the latest requests for `Service::recordedRequests`.
    bool recordRequests = false;
};

}  // namespace TarnwickService
