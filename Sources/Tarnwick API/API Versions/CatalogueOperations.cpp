#include <Tarnwick_API/Backends/ApiVersion1.hpp>
#include <Tarnwick_API/Calls/CatalogueCalls.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <utility>

#include <DecodeAnswer.hpp>

namespace Tarnwick_API {

namespace {

/// The decoders of the answers, chosen by the class of the call.
auto decoderOf(const CountryCallV1& /*call*/) {
    return [](const Platform::Bytes& body) { return Platform::JsonDecoder{}.decodeArray<Country>(body); };
}

auto decoderOf(const ServerCallV1& call) {
    return [kind = call.jsonKind()](const Platform::Bytes& body) { return decodeServers(body, kind); };
}

auto singleDecoderOf(const ServerCallV1& call) {
    return [kind = call.jsonKind()](const Platform::Bytes& body) { return decodeServer(body, kind); };
}

auto decoderOf(const DefaultFavoritesCallV1& /*call*/) {
    return [](const Platform::Bytes& body) {
        auto entries = decodeFavoriteEntries(body);
        // An empty list of favourites counts as no data, unlike an empty list of servers.
        return entries.empty() ? std::nullopt : std::optional{std::move(entries)};
    };
}

}  // namespace

void ApiVersion1::getCountries(std::int64_t filterId, std::optional<double> latitude, std::optional<double> longitude,
                               Completion<std::vector<Country>> onCompletion) {
    const CountryCallV1 call{environment_, partnersId_, baseUrl(), filterId, latitude, longitude};
    dispatchCall(call, decodingCompletion<CountryCallV1::Answer>(decoderOf(call), std::move(onCompletion)));
}

void ApiVersion1::getServers(std::int64_t filterId, const std::string& countryCode, std::optional<double> latitude,
                             std::optional<double> longitude, Completion<std::vector<Server>> onCompletion) {
    const ServerCallV1 call{environment_, partnersId_, baseUrl(), filterId,
                            countryCode,  latitude,    longitude, ServerJsonKind::short_};
    dispatchCall(call, decodingCompletion<ServerCallV1::Answer>(decoderOf(call), std::move(onCompletion)));
}

void ApiVersion1::getServer(std::int64_t id, Completion<Server> onCompletion) {
    const ServerCallV1 call{environment_, partnersId_, baseUrl(), id};
    dispatchCall(call, decodingCompletion<ServerCallV1::SingleAnswer>(singleDecoderOf(call), std::move(onCompletion)));
}

void ApiVersion1::getCandidateServers(std::int64_t filterId, const std::optional<std::string>& countryCode,
                                      std::optional<std::int64_t> serviceId,
                                      Completion<std::vector<Server>> onCompletion) {
    const auto send = [&](const ServerCallV1& call) {
        dispatchCall(call, decodingCompletion<ServerCallV1::Answer>(decoderOf(call), std::move(onCompletion)));
    };
    if (serviceId && countryCode) {
        send(ServerCallV1{environment_, partnersId_, baseUrl(), filterId, countryCode, serviceId});
    } else {
        send(ServerCallV1{environment_, partnersId_, baseUrl(), filterId, countryCode, std::nullopt, std::nullopt,
                          ServerJsonKind::short_});
    }
}

void ApiVersion1::getDefaultFavorites(std::int64_t filterId, Completion<std::vector<FavoriteEntry>> onCompletion) {
    const DefaultFavoritesCallV1 call{environment_, partnersId_, baseUrl(), filterId};
    dispatchCall(call, decodingCompletion<DefaultFavoritesCallV1::Answer>(decoderOf(call), std::move(onCompletion)));
}

}  // namespace Tarnwick_API
