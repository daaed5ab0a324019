#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Text/Bytes.hpp>
#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/FavoriteItem.hpp>
#include <Tarnwick_API/Records/Server.hpp>

#include <variant>
#include <vector>

namespace Tarnwick_API {

/// A favourite as the record that it stands for.
using FavoriteEntry = std::variant<Server, Country>;

/// A server for a favourite with an address, otherwise a country.
[[nodiscard]] TARNWICK_API_EXPORT FavoriteEntry favoriteEntryFrom(FavoriteItem item);

/// The favourites of a list, in its order. Throws `Platform::DecodingError`.
[[nodiscard]] TARNWICK_API_EXPORT std::vector<FavoriteEntry> decodeFavoriteEntries(const Platform::Bytes& bytes);

}  // namespace Tarnwick_API
