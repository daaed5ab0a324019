#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/CatalogueCalls.hpp>

#include <utility>

#include "DecodeAnswer.hpp"

namespace Tarnwick_API {

namespace {

/// The decoder of an answer to `call`, in the form that the call asks for.
auto listDecoderOf(const ServerCallV1& call) {
    return [kind = call.jsonKind()](const Platform::Bytes& body) { return decodeServers(body, kind); };
}

auto decoderOf(const ServerCallV1& call) {
    return [kind = call.jsonKind()](const Platform::Bytes& body) { return decodeServer(body, kind); };
}

/// An empty list of favourites counts as no data, unlike an empty list of servers.
std::optional<std::vector<FavoriteEntry>> decodeFavorites(const Platform::Bytes& body) {
    auto entries = decodeFavoriteEntries(body);
    return entries.empty() ? std::nullopt : std::optional{std::move(entries)};
}

}  // namespace

void ApiVersion1::getCountries(std::int64_t filterId, std::optional<double> latitude, std::optional<double> longitude,
                               Completion<std::vector<Country>> onCompletion) {
    static constexpr Operation operation{"getCountries(filterId:latitude:longitude:onCompletion:)"};
    dispatchCall(CountryCallV1{apiBase(), filterId, latitude, longitude},
                 decodingCompletion<CountryCallV1::Answer, operation, decodeRecords<Country>>(std::move(onCompletion)));
}

void ApiVersion1::getServers(std::int64_t filterId, const std::string& countryCode, std::optional<double> latitude,
                             std::optional<double> longitude, Completion<std::vector<Server>> onCompletion) {
    static constexpr Operation operation{"getServers(filterId:countryCode:latitude:longitude:onCompletion:)"};
    const ServerCallV1 call{apiBase(), filterId, countryCode, latitude, longitude, ServerJsonKind::short_};
    dispatchCall(call,
                 decodingCompletion<ServerCallV1::Answer, operation>(listDecoderOf(call), std::move(onCompletion)));
}

void ApiVersion1::getServer(std::int64_t id, Completion<Server> onCompletion) {
    static constexpr Operation operation{"getServer(id:onCompletion:)"};
    const ServerCallV1 call{apiBase(), id};
    dispatchCall(call,
                 decodingCompletion<ServerCallV1::SingleAnswer, operation>(decoderOf(call), std::move(onCompletion)));
}

void ApiVersion1::getCandidateServers(std::int64_t filterId, const std::optional<std::string>& countryCode,
                                      std::optional<std::int64_t> serviceId,
                                      Completion<std::vector<Server>> onCompletion) {
    static constexpr Operation operation{"getCandidateServers(filterId:countryCode:serviceId:onCompletion:)"};
    const auto call = serviceId && countryCode ? ServerCallV1{apiBase(), filterId, countryCode, serviceId}
                                               : ServerCallV1{apiBase(), filterId, countryCode, ServerJsonKind::short_};
    dispatchCall(call,
                 decodingCompletion<ServerCallV1::Answer, operation>(listDecoderOf(call), std::move(onCompletion)));
}

void ApiVersion1::getDefaultFavorites(std::int64_t filterId, Completion<std::vector<FavoriteEntry>> onCompletion) {
    static constexpr Operation operation{"getDefaultFavorites(filterId:onCompletion:)"};
    dispatchCall(
        DefaultFavoritesCallV1{apiBase(), filterId},
        decodingCompletion<DefaultFavoritesCallV1::Answer, operation, decodeFavorites>(std::move(onCompletion)));
}

}  // namespace Tarnwick_API
