#include <Tarnwick_API/Facade/TarnwickApiSettings.hpp>

namespace Tarnwick_API {

std::vector<std::string> TarnwickApiSettings::faults() const {
    std::vector<std::string> found;
    if (consumerKey.empty() || consumerSecret.empty()) {
        found.emplace_back("consumerKey, consumerSecret: the service answers nobody without both");
    }
    if (partnersId <= 0) {
        found.emplace_back("partnersId: the service's numbers begin with 1");
    }
    if (keychainService.empty()) {
        found.emplace_back("keychainService: without a name the token can't be told from other applications'");
    }
    if (const auto fault = ApiUrl{apiUrl}.fault(environment)) {
        found.push_back("apiUrl: " + *fault);
    }
    if (!(retrySpread.share >= 0 && retrySpread.share <= 1)) {
        found.emplace_back("retrySpread: its share is not from 0 to 1");
    }
    return found;
}

}  // namespace Tarnwick_API
