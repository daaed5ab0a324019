#include <Tarnwick_API/Facade/FilterIds.hpp>

namespace Tarnwick_API {

std::int64_t FilterIds::getCountryFilterId(ServerProfile profile) const noexcept {
    switch (profile) {
        case ServerProfile::downloading:
            return numbers_.downloadingCountriesAll;
        case ServerProfile::streaming:
            return numbers_.streamingCountriesAll;
        case ServerProfile::general:
            break;
    }
    return numbers_.generalCountriesAll;
}

std::int64_t FilterIds::getCandidateServerFilterId(ServerProfile profile) const noexcept {
    switch (profile) {
        case ServerProfile::downloading:
            return numbers_.downloadingServersCandidatesPerCountry;
        case ServerProfile::streaming:
            return numbers_.streamingServersCandidatesPerCountry;
        case ServerProfile::general:
            break;
    }
    return numbers_.generalServersCandidatesPerCountry;
}

}  // namespace Tarnwick_API
