#pragma once

#include "Model/Catalogue.hpp"

#include <string>

namespace TarnwickService {

/// The service's JSON for catalogue answers. Which members are texts and which are numbers differs from record to
/// record, as does the spelling of their names: clients of the service know it so.
std::string shortServerList(const Catalogue& catalogue, const std::vector<ListedServer>& servers);
std::string longServer(const Catalogue& catalogue, const Server& server);
std::string countryList(Usage usage, const std::vector<ListedCountry>& countries);
std::string defaultFavorites(const Catalogue& catalogue);

}  // namespace TarnwickService
