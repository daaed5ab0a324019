#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>
#include <Tarnwick_API/Records/Server.hpp>

#include <vector>

namespace Benchmarks {

/// Read a list of short servers as the library does, by the same rules, with other readers. Empty when the list is bad.
[[nodiscard]] std::vector<Tarnwick_API::Server> serversBySimdjson(const Tarnwick_API::Platform::Bytes& body);
[[nodiscard]] std::vector<Tarnwick_API::Server> serversByRapidJson(const Tarnwick_API::Platform::Bytes& body);
[[nodiscard]] std::vector<Tarnwick_API::Server> serversByNlohmann(const Tarnwick_API::Platform::Bytes& body);

}  // namespace Benchmarks
