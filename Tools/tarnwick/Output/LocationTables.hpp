#pragma once

#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/FavoriteEntry.hpp>
#include <Tarnwick_API/Records/Server.hpp>

#include "Commands/Command.hpp"

#include <vector>

namespace TarnwickClient {

/// Countries, the nearest first where distances are known, otherwise by name.
[[nodiscard]] Result countriesResult(std::vector<Tarnwick_API::Country> countries);

/// Servers, the nearest first where distances are known, otherwise the least loaded first.
[[nodiscard]] Result serversResult(std::vector<Tarnwick_API::Server> servers);

/// One server with everything that is known of it.
[[nodiscard]] Result serverResult(const Tarnwick_API::Server& server);

/// Favourites in the service's order.
[[nodiscard]] Result favoritesResult(const std::vector<Tarnwick_API::FavoriteEntry>& favorites);

}  // namespace TarnwickClient
