#include "Api/CatalogueApi.hpp"

#include "Api/CatalogueRecords.hpp"
#include "Api/Refusals.hpp"
#include "Http/HttpDate.hpp"

#include <charconv>
#include <cmath>
#include <functional>

namespace TarnwickService {
namespace {

// Large lists take megabytes; a client with moving coordinates must not fill the memory with them.
constexpr std::size_t mostCachedAnswers = 16;
constexpr std::size_t candidateCount = 20;

void requireAngle(const char* name, double angle, double largest) {
    if (!std::isfinite(angle) || std::abs(angle) > largest) {
        refuseMalformed(std::string("parameter ") + name + " is not an angle between -" + std::to_string(largest) +
                        " and " + std::to_string(largest));
    }
}

}  // namespace

CatalogueApi::CatalogueApi(const Catalogue& catalogue, const RequestCheck& check, const Caller& caller,
                           const Configuration& configuration)
    : catalogue_(catalogue),
      check_(check),
      caller_(caller),
      filters_(configuration.filterIds),
      cacheControl_(configuration.catalogueMaxAge.count() > 0
                        ? "private, max-age=" + std::to_string(configuration.catalogueMaxAge.count())
                        : "private, no-cache"),
      lastModified_(httpDate(std::time(nullptr))),
      strict_(configuration.strict) {
}

Answer CatalogueApi::list(const Request& request) {
    check_.authorization(request, SessionRule::ifGiven);
    check_.fullRights(request);
    Parameters parameters = check_.parameters(request, Encoding::query);
    return answer(request, cached(std::string(request.target), [&] { return makeList(std::move(parameters)); }));
}

Answer CatalogueApi::server(const Request& request, std::string_view id) {
    check_.authorization(request, SessionRule::ifGiven);
    check_.fullRights(request);
    check_.parameters(request, Encoding::query).requireNoMore();
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), number);
    const Server* server = error == std::errc() && end == id.data() + id.size() ? catalogue_.find(number) : nullptr;
    if (server == nullptr) {
        return plainText(404, "No such server");
    }
    const auto bytes = std::make_shared<const std::string>(longServer(catalogue_, *server));
    return answer(request, {bytes, '"' + std::to_string(std::hash<std::string>{}(*bytes)) + '"'});
}

std::string CatalogueApi::makeList(Parameters parameters) const {
    const std::optional<std::int64_t> filter = parameters.takeInteger("filter");
    if (!filter) {
        refuseMalformed("parameter filter is missing");
    }
    const Coordinates origin = takeOrigin(parameters);
    std::optional<Usage> countries;
    if (*filter == filters_.generalCountriesAll) {
        countries = Usage::general;
    } else if (*filter == filters_.downloadingCountriesAll) {
        countries = Usage::downloading;
    } else if (*filter == filters_.streamingCountriesAll) {
        countries = Usage::streaming;
    }
    if (countries) {
        parameters.requireNoMore();
        return countryList(*countries, catalogue_.listCountries(*countries, origin));
    }
    if (*filter == filters_.defaultFavorites) {
        parameters.requireNoMore();
        return defaultFavorites(catalogue_);
    }
    return makeServerList(*filter, parameters, origin);
}

std::string CatalogueApi::makeServerList(std::int64_t filter, Parameters& parameters, Coordinates origin) const {
    parameters.requireValue("filter_protocol", "ipsec");
    ServerQuery query;
    query.origin = origin;
    query.countryCode = parameters.take("filter_country").value_or("");
    query.contentId = parameters.takeInteger("filter_content_id");
    parameters.requireNoMore();
    if (filter == filters_.smartServersCandidates) {
        if (!query.countryCode.empty()) {
            refuseMalformed("filter " + std::to_string(filter) + " chooses the country itself");
        }
        query.candidatesOnly = true;
    } else if (filter == filters_.generalServersCandidatesPerCountry) {
        query.candidatesOnly = true;
    } else if (filter == filters_.downloadingServersCandidatesPerCountry) {
        query.candidatesOnly = true;
        query.downloadingOnly = true;
    } else if (filter == filters_.streamingServersCandidatesPerCountry) {
        query.candidatesOnly = true;
        query.streamingOnly = true;
    } else if (filter != filters_.generalServersPerCountry) {
        refuseMalformed("parameter filter: there is no filter " + std::to_string(filter));
    }
    if (query.candidatesOnly) {
        query.limit = candidateCount;
    }
    return shortServerList(catalogue_, catalogue_.list(query));
}

Coordinates CatalogueApi::takeOrigin(Parameters& parameters) const {
    const std::optional<double> latitude = parameters.takeReal("filter_user_latitude");
    const std::optional<double> longitude = parameters.takeReal("filter_user_longitude");
    if (latitude.has_value() != longitude.has_value()) {
        refuseMalformed("coordinates come in pairs");
    }
    if (!latitude) {
        return caller_.place.coordinates;
    }
    constexpr double quarterTurn = 90;
    constexpr double halfTurn = 180;
    requireAngle("filter_user_latitude", *latitude, quarterTurn);
    requireAngle("filter_user_longitude", *longitude, halfTurn);
    return {*latitude, *longitude};
}

template <typename Make>
CatalogueApi::CachedAnswer CatalogueApi::cached(const std::string& key, Make make) {
    {
        const std::lock_guard lock(mutex_);
        if (const auto found = cache_.find(key); found != cache_.end()) {
            return found->second;
        }
    }
    CachedAnswer made;
    made.bytes = std::make_shared<const std::string>(make());
    made.entityTag = '"' + std::to_string(std::hash<std::string>{}(*made.bytes)) + '"';
    const std::lock_guard lock(mutex_);
    if (cache_.size() >= mostCachedAnswers) {
        cache_.clear();
    }
    cache_.insert_or_assign(key, made);
    return made;
}

Answer CatalogueApi::answer(const Request& request, const CachedAnswer& cached) const {
    Answer answer;
    answer.headers.emplace_back("Cache-Control", cacheControl_);
    answer.headers.emplace_back("ETag", cached.entityTag);
    answer.headers.emplace_back("Last-Modified", lastModified_);
    const auto tag = request.header("If-None-Match");
    if (tag ? tag == cached.entityTag : request.header("If-Modified-Since") == lastModified_) {
        answer.status = 304;
    } else {
        answer.sharedBody = cached.bytes;
    }
    return answer;
}

}  // namespace TarnwickService
