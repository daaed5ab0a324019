#pragma once

#include "Model/Places.hpp"

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace TarnwickService {

/// Where the service takes its callers to be. On loopback there is nothing to find out, so this is configured.
struct Caller {
    std::string address;
    Place place;
};

/// Throws std::invalid_argument when no place has that zone.
Caller makeCaller(const std::string& address, const std::string& zone, const std::vector<Place>& places);

nlohmann::ordered_json locationRecord(const Caller& caller);

}  // namespace TarnwickService
