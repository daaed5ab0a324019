#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include <Facade/FacadeUse.hpp>

#include <utility>

namespace Tarnwick_API {

namespace {

std::int64_t candidateFilterId(const FilterIds& filters, bool hasCountry, ServerProfile profile) {
    // The service picks across countries for general use only; the other profiles have no such filter.
    if (!hasCountry && profile == ServerProfile::general) {
        return filters.smartServersCandidates();
    }
    return filters.getCandidateServerFilterId(profile);
}

}  // namespace

void TarnwickApi::getCountries(ServerProfile profile, std::optional<double> latitude, std::optional<double> longitude,
                               Completion<std::vector<Country>> onCompletion) {
    const Use use{*this, "getCountries"};
    api_->getCountries(filters_.getCountryFilterId(profile), latitude, longitude, std::move(onCompletion));
}

void TarnwickApi::getServers(const std::string& countryCode, std::optional<double> latitude,
                             std::optional<double> longitude, Completion<std::vector<Server>> onCompletion) {
    const Use use{*this, "getServers"};
    api_->getServers(filters_.generalServersPerCountry(), countryCode, latitude, longitude, std::move(onCompletion));
}

void TarnwickApi::getCandidateServers(const std::optional<std::string>& countryCode, ServerProfile profile,
                                      std::optional<std::int64_t> serviceId,
                                      Completion<std::vector<Server>> onCompletion) {
    const Use use{*this, "getCandidateServers"};
    api_->getCandidateServers(candidateFilterId(filters_, countryCode.has_value(), profile), countryCode, serviceId,
                              std::move(onCompletion));
}

void TarnwickApi::getDefaultFavorites(Completion<std::vector<FavoriteEntry>> onCompletion) {
    const Use use{*this, "getDefaultFavorites"};
    api_->getDefaultFavorites(filters_.defaultFavorites(), std::move(onCompletion));
}

}  // namespace Tarnwick_API
