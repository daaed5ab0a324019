#include <Tarnwick_API/Calls/ApiCall.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>

#include <Calls/BaseUrlFault.hpp>

#include <cstdint>
#include <cstdio>
#include <exception>
#include <utility>

namespace Tarnwick_API {

namespace {

/// Into a map of texts or of parameters.
template <typename Parameters>
void assignDefaults(Parameters& parameters, std::int64_t partnersId) {
    const auto locale = Platform::Locale::current();
    parameters.insert_or_assign("language", locale.languageCode().value_or("en"));
    parameters.insert_or_assign("region", locale.regionCode().value_or("US"));
    parameters.insert_or_assign("version", Platform::Bundle::main()->text("CFBundleVersion").value_or("7.x"));
    parameters.insert_or_assign("os", "mac");
    parameters.insert_or_assign("partnersId", std::to_string(partnersId));
    if (auto clickId = Platform::Preferences::text("cid")) {
        parameters.insert_or_assign("clickid", *std::move(clickId));
    }
}

}  // namespace

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
    assignDefaults(parameters, partnersId_);
    return parameters;
}

std::map<std::string, std::string> ApiCallV1::defaultParameters() const {
    std::map<std::string, std::string> parameters;
    assignDefaults(parameters, partnersId_);
    return parameters;
}

}  // namespace Tarnwick_API
