#include <Tarnwick_API/Facade/FilterIds.hpp>

namespace Tarnwick_API {

std::int64_t FilterIds::getCountryFilterId(ServerProfile profile) const noexcept {
    switch (profile) {
        case ServerProfile::downloading:
            return downloadingCountriesAll_;
        case ServerProfile::streaming:
            return streamingCountriesAll_;
        case ServerProfile::general:
            break;
    }
    return generalCountriesAll_;
}

std::int64_t FilterIds::getCandidateServerFilterId(ServerProfile profile) const noexcept {
    switch (profile) {
        case ServerProfile::downloading:
            return downloadingServersCandidatesPerCountry_;
        case ServerProfile::streaming:
            return streamingServersCandidatesPerCountry_;
        case ServerProfile::general:
            break;
    }
    return generalServersCandidatesPerCountry_;
}

}  // namespace Tarnwick_API
