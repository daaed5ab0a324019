#include "Documentation/CountryCodes.hpp"

#include <Tarnwick_API/Records/Country.hpp>

#include <fstream>
#include <string>

namespace TarnwickClient {

std::vector<CommandLine::Candidate> countryCodes() {
    std::vector<CommandLine::Candidate> codes;
    // The codes of ISO 3166, which the system keeps beside its time zones.
    std::ifstream table{"/usr/share/zoneinfo/iso3166.tab"};
    Tarnwick_API::Country country;
    for (std::string line; std::getline(table, line);) {
        if (!line.starts_with('#')) {
            country.countryCode = line.substr(0, line.find('\t'));
            codes.push_back({country.countryCode, country.localizedCountryName()});
        }
    }
    return codes;
}

}  // namespace TarnwickClient
