#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace TarnwickService {

/// Degrees, north and east positive.
struct Coordinates {
    double latitude = 0;
    double longitude = 0;
};

/// The great-circle distance on a sphere of the Earth's mean radius.
double distanceInKilometres(Coordinates from, Coordinates to);

struct Place {
    std::string zone;
    std::string city;
    std::string countryCode;
    std::string countryName;
    Coordinates coordinates;
};

/// Reads one row of the time-zone table: codes, coordinates, zone, parted by tabs. Throws std::invalid_argument.
Place parsePlace(std::string_view row);

/// Reads "zone1970.tab" and the country names of "iso3166.tab" in that directory. Throws std::runtime_error when one of
/// them cannot be read or holds a row that is not understood.
std::vector<Place> readPlaces(const std::filesystem::path& directory);

}  // namespace TarnwickService
