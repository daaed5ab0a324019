#include <Tarnwick_API/Facade/ApiUrl.hpp>

#include <Calls/BaseUrlFault.hpp>

namespace Tarnwick_API {

const std::string& ApiUrl::hostname(ApiEnvironment environment) const noexcept {
    switch (environment) {
        case ApiEnvironment::live:
            return hosts_.live;
        case ApiEnvironment::beta:
            return hosts_.beta;
        case ApiEnvironment::staging:
            return hosts_.staging;
        case ApiEnvironment::dev:
            break;
    }
    return hosts_.dev;
}

std::string ApiUrl::baseUrl(ApiEnvironment environment) const {
    return "https://" + hostname(environment) + "/vb";
}

std::optional<std::string> ApiUrl::fault(ApiEnvironment environment) const {
    return baseUrlFault(baseUrl(environment));
}

}  // namespace Tarnwick_API
