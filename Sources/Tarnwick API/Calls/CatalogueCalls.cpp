#include <Tarnwick_API/Calls/CatalogueCalls.hpp>

#include <string_view>
#include <utility>

namespace Tarnwick_API {

using Platform::HttpMethod;
using Platform::ParameterEncoding;
using Platform::Parameters;

namespace {

constexpr std::string_view catalogueProtocol = "ipsec";

void addPosition(Parameters& parameters, std::optional<double> latitude, std::optional<double> longitude) {
    if (latitude && longitude) {
        parameters.emplace("filter_user_latitude", *latitude);
        parameters.emplace("filter_user_longitude", *longitude);
    }
}

}  // namespace

CountryCallV1::CountryCallV1(ApiBase base, std::int64_t filterId, std::optional<double> latitude,
                             std::optional<double> longitude)
    : ApiCallV1{{HttpMethod::get, "servers", ParameterEncoding::url}, std::move(base)},
      filterId_{filterId},
      latitude_{latitude},
      longitude_{longitude} {
}

Parameters CountryCallV1::ownParameters() const {
    Parameters parameters{{"filter", filterId_}};
    addPosition(parameters, latitude_, longitude_);
    return parameters;
}

ServerCallV1::ServerCallV1(ApiBase base, std::int64_t filterId, std::optional<std::string> countryCode,
                           std::optional<double> latitude, std::optional<double> longitude, ServerJsonKind jsonKind)
    : ApiCallV1{{HttpMethod::get, "servers", ParameterEncoding::url}, std::move(base)},
      jsonKind_{jsonKind},
      filterId_{filterId},
      countryCode_{std::move(countryCode)},
      latitude_{latitude},
      longitude_{longitude} {
}

ServerCallV1::ServerCallV1(ApiBase base, std::int64_t filterId, std::optional<std::string> countryCode,
                           std::optional<std::int64_t> serviceId)
    : ApiCallV1{{HttpMethod::get, "servers", ParameterEncoding::url}, std::move(base)},
      jsonKind_{ServerJsonKind::short_},
      filterId_{filterId},
      countryCode_{std::move(countryCode)},
      serviceId_{serviceId} {
}

ServerCallV1::ServerCallV1(ApiBase base, std::int64_t id)
    : ApiCallV1{{HttpMethod::get, "servers/" + std::to_string(id), ParameterEncoding::url}, std::move(base)},
      jsonKind_{ServerJsonKind::long_} {
}

Parameters ServerCallV1::ownParameters() const {
    Parameters parameters;
    if (filterId_) {
        parameters.emplace("filter", *filterId_);
        parameters.emplace("filter_protocol", catalogueProtocol);
    }
    if (countryCode_) {
        parameters.emplace("filter_country", *countryCode_);
    }
    if (serviceId_) {
        parameters.emplace("filter_content_id", *serviceId_);
    }
    addPosition(parameters, latitude_, longitude_);
    return parameters;
}

DefaultFavoritesCallV1::DefaultFavoritesCallV1(ApiBase base, std::int64_t filterId)
    : ApiCallV1{{HttpMethod::get, "servers", ParameterEncoding::url}, std::move(base)}, filterId_{filterId} {
}

Parameters DefaultFavoritesCallV1::ownParameters() const {
    return {{"filter", filterId_}};
}

}  // namespace Tarnwick_API
