#include "Model/Places.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <map>
#include <numbers>
#include <stdexcept>

namespace TarnwickService {
namespace {

std::vector<std::string_view> split(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (true) {
        const auto end = std::min(text.find(separator), text.size());
        parts.push_back(text.substr(0, end));
        if (end == text.size()) {
            return parts;
        }
        text.remove_prefix(end + 1);
    }
}

// ISO 6709: a sign, degrees of a fixed width, minutes and perhaps seconds of two digits each.
double parseAngle(std::string_view text, std::size_t degreeDigits) {
    const auto number = [&](std::size_t at, std::size_t digits) {
        int value = 0;
        const auto* const end = text.data() + at + digits;
        if (at + digits > text.size() || std::from_chars(text.data() + at, end, value).ptr != end) {
            throw std::invalid_argument("not an angle: " + std::string(text));
        }
        return static_cast<double>(value);
    };
    constexpr double minutesPerDegree = 60;
    constexpr double secondsPerDegree = 3600;
    double angle = number(1, degreeDigits) + number(1 + degreeDigits, 2) / minutesPerDegree;
    if (text.size() > degreeDigits + 3) {
        angle += number(degreeDigits + 3, 2) / secondsPerDegree;
    }
    return text.front() == '-' ? -angle : angle;
}

double radians(double degrees) {
    constexpr double halfTurn = 180;
    return degrees * std::numbers::pi / halfTurn;
}

std::ifstream open(const std::filesystem::path& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string() + " (package tzdata)");
    }
    return file;
}

std::map<std::string, std::string, std::less<>> readCountryNames(const std::filesystem::path& path) {
    std::map<std::string, std::string, std::less<>> names;
    std::ifstream file = open(path);
    for (std::string line; std::getline(file, line);) {
        const auto fields = split(line, '\t');
        if (!line.starts_with('#') && fields.size() == 2) {
            names.emplace(fields[0], fields[1]);
        }
    }
    return names;
}

}  // namespace

double distanceInKilometres(Coordinates from, Coordinates to) {
    constexpr double meanEarthRadius = 6371.0088;
    const double latitudeHalf = std::sin(radians(to.latitude - from.latitude) / 2);
    const double longitudeHalf = std::sin(radians(to.longitude - from.longitude) / 2);
    const double haversine = latitudeHalf * latitudeHalf + std::cos(radians(from.latitude)) *
                                                               std::cos(radians(to.latitude)) * longitudeHalf *
                                                               longitudeHalf;
    // Rounding may carry the value past 1 for antipodes.
    return 2 * meanEarthRadius * std::asin(std::sqrt(std::min(1.0, haversine)));
}

Place parsePlace(std::string_view row) {
    const auto fields = split(row, '\t');
    if (fields.size() < 3 || fields[0].size() < 2 || fields[1].empty() || fields[2].empty()) {
        throw std::invalid_argument("not a row of the zone table: " + std::string(row));
    }
    // The city lies in the first country; the others merely keep the same time.
    Place place;
    place.countryCode = fields[0].substr(0, 2);
    const auto longitudeSign = fields[1].find_first_of("+-", 1);
    if (longitudeSign == std::string_view::npos) {
        throw std::invalid_argument("not coordinates: " + std::string(fields[1]));
    }
    place.coordinates = {parseAngle(fields[1].substr(0, longitudeSign), 2),
                         parseAngle(fields[1].substr(longitudeSign), 3)};
    place.zone = fields[2];
    place.city = place.zone.substr(place.zone.rfind('/') + 1);
    std::ranges::replace(place.city, '_', ' ');
    return place;
}

std::vector<Place> readPlaces(const std::filesystem::path& directory) {
    const auto names = readCountryNames(directory / "iso3166.tab");
    std::vector<Place> places;
    std::ifstream file = open(directory / "zone1970.tab");
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.starts_with('#')) {
            continue;
        }
        Place place = parsePlace(line);
        if (const auto name = names.find(place.countryCode); name != names.end()) {
            place.countryName = name->second;
        }
        places.push_back(std::move(place));
    }
    if (places.empty()) {
        throw std::runtime_error((directory / "zone1970.tab").string() + " holds no places");
    }
    return places;
}

}  // namespace TarnwickService
