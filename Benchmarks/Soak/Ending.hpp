#pragma once

#include <Tarnwick_API/Calls/ApiError.hpp>

#include <cstddef>
#include <optional>

namespace Benchmarks {

/// What an operation came to. Whoever is under faults can't tell which end is due; but each kind of fault has its own.
enum class Ending {
    value,         ///< and it is the right one
    refused,       ///< by a fault that was ordered
    undecodable,   ///< neither a value nor an error
    notReachable,  ///< all attempts failed
    stopped,       ///< as it was asked to
    proxyError,    ///< the HTTP/2 proxy's own answer to a connection that the service has cut
    wrong,         ///< anything else
};
inline constexpr std::size_t endingCount = 7;

/// For an operation that came to no value.
[[nodiscard]] Ending endingOf(const std::optional<Tarnwick_API::ApiError>& error);

}  // namespace Benchmarks
