#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>
#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/Server.hpp>

#include <vector>

namespace Benchmarks {

// Read lists as the library does, by the same rules, with other readers.

/// simdjson's On-Demand reader, which makes no document; members in the order that is known, each read where it comes,
/// and what nobody asks for checked as well.
[[nodiscard]] std::vector<Tarnwick_API::Server> serversBySimdjson(const Tarnwick_API::Platform::Bytes& body);

/// simdjson's document, each object walked once, in the order that is known.
[[nodiscard]] std::vector<Tarnwick_API::Server> longServersBySimdjson(const Tarnwick_API::Platform::Bytes& body);
[[nodiscard]] std::vector<Tarnwick_API::Device> devicesBySimdjson(const Tarnwick_API::Platform::Bytes& body);

/// Empty when the list is bad.
[[nodiscard]] std::vector<Tarnwick_API::Server> serversByRapidJson(const Tarnwick_API::Platform::Bytes& body);
[[nodiscard]] std::vector<Tarnwick_API::Server> serversByNlohmann(const Tarnwick_API::Platform::Bytes& body);

}  // namespace Benchmarks
