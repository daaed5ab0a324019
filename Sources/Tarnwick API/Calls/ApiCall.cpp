#include <Tarnwick_API/Calls/ApiCall.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>

#include <Calls/BaseUrlFault.hpp>
#include <Calls/MapMerge.hpp>

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
    parameters += defaultParameters();
    return parameters;
}

std::map<std::string, std::string> ApiCallV1::defaultParameters() const {
    const auto locale = Platform::Locale::current();
    std::map<std::string, std::string> parameters{
        {"language", locale.languageCode().value_or("en")},
        {"region", locale.regionCode().value_or("US")},
        {"version", Platform::Bundle::main()->text("CFBundleVersion").value_or("7.x")},
        {"os", "mac"},
        {"partnersId", std::to_string(partnersId_)},
    };
    if (auto clickId = Platform::Preferences::text("cid")) {
        parameters.emplace("clickid", *std::move(clickId));
    }
    return parameters;
}

}  // namespace Tarnwick_API
