#include <Tarnwick_API/Facade/ApiUrl.hpp>

namespace Tarnwick_API {

const std::string& ApiUrl::hostname(ApiEnvironment environment) const noexcept {
    switch (environment) {
        case ApiEnvironment::live:
            return live_;
        case ApiEnvironment::beta:
            return beta_;
        case ApiEnvironment::staging:
            return staging_;
        case ApiEnvironment::dev:
            break;
    }
    return dev_;
}

std::string ApiUrl::baseUrl(ApiEnvironment environment) const {
    return "https://" + hostname(environment) + "/vb";
}

}  // namespace Tarnwick_API
