#include <Tarnwick_API/Calls/ApiCall.hpp>

#include <Calls/BaseUrlFault.hpp>
#include <Calls/DefaultParameters.hpp>

#include <cstdio>
#include <exception>
#include <utility>

namespace Tarnwick_API {

Platform::Url ApiCall::url() const {
    const auto base = Platform::Url::fromString(baseUrl_);
    if (!base) {
        std::fprintf(stderr, "Tarnwick_API: %s\n", baseUrlFault(baseUrl_).value_or(baseUrl_).c_str());
        std::terminate();
    }
    return base->appendingPathComponent(urlPath_);
}

ApiCallV1::ApiCallV1(ApiEndpoint endpoint, ApiBase base)
    : ApiCall{std::move(base.baseUrl), std::move(endpoint.urlPath)},
      method_{endpoint.method},
      headers_{std::move(endpoint.headers)},
      environment_{base.environment},
      encoding_{endpoint.encoding},
      partnersId_{base.partnersId} {
}

std::optional<Platform::Parameters> ApiCallV1::parameters() const {
    auto parameters = ownParameters();
    DefaultParameters::current(partnersId_).assignTo(parameters);
    return parameters;
}

std::map<std::string, std::string> ApiCallV1::defaultParameters() const {
    std::map<std::string, std::string> parameters;
    DefaultParameters::current(partnersId_).assignTo(parameters);
    return parameters;
}

}  // namespace Tarnwick_API
