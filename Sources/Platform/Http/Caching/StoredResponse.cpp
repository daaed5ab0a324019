#include <Platform/Http/Caching/StoredResponse.hpp>

#include <Platform/Http/Caching/ResponseFields.hpp>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <variant>

namespace Tarnwick_API::Platform {

namespace {

using std::chrono::seconds;

// These names are in the caches' files.
constexpr const char* requestTimeName = "HttpRequestTime";
constexpr const char* responseTimeName = "HttpResponseTime";
constexpr const char* secondaryKeyName = "HttpRequestIdentity";

/// Fields of one connection, which are not stored.
bool isOfConnection(std::string_view lowerCaseName) {
    static constexpr std::array<std::string_view, 9> names{"connection",
                                                           "keep-alive",
                                                           "proxy-authenticate",
                                                           "proxy-authentication-info",
                                                           "proxy-connection",
                                                           "te",
                                                           "trailer",
                                                           "transfer-encoding",
                                                           "upgrade"};
    return std::find(names.begin(), names.end(), lowerCaseName) != names.end();
}

bool describesBody(std::string_view lowerCaseName) {
    return lowerCaseName == "content-length" || lowerCaseName == "content-encoding" ||
           lowerCaseName == "content-range" || lowerCaseName == "content-type";
}

/// The weak comparison of entity tags, which is the one for GET.
bool weaklyMatch(std::string_view left, std::string_view right) {
    const auto opaque = [](std::string_view tag) { return tag.substr(tag.starts_with("W/") ? 2 : 0); };
    return opaque(left) == opaque(right);
}

template <typename Value>
std::optional<Value> noted(const UserInformation& information, const char* name) {
    const auto note = information.find(name);
    const auto* const value = note == information.end() ? nullptr : std::get_if<Value>(&note->second);
    return value != nullptr ? std::optional{*value} : std::nullopt;
}

}  // namespace

std::optional<StoredResponse> StoredResponse::read(std::shared_ptr<const CachedUrlResponse> entry,
                                                   const RequestFields& fields) {
    if (!entry || !entry->body || !entry->userInformation) {
        return std::nullopt;
    }
    const auto request = noted<WallTime>(*entry->userInformation, requestTimeName);
    const auto response = noted<WallTime>(*entry->userInformation, responseTimeName);
    const auto key = noted<UserInformationBytes>(*entry->userInformation, secondaryKeyName);
    if (!request || !response || !key || key->bytes != fields.secondaryKey(fieldValue(entry->response, "vary"))) {
        return std::nullopt;
    }
    return StoredResponse{std::move(entry), {*request, *response}};
}

std::shared_ptr<const CachedUrlResponse> StoredResponse::entry(HttpResponse response, std::shared_ptr<const Bytes> body,
                                                               const RequestFields& fields,
                                                               const ExchangeTimes& times) {
    auto key = fields.secondaryKey(fieldValue(response, "vary"));
    std::erase_if(response.headers, [](const auto& header) { return isOfConnection(header.first); });
    return std::make_shared<const CachedUrlResponse>(CachedUrlResponse{
        .response = std::move(response),
        .body = std::move(body),
        .userInformation = UserInformation{{requestTimeName, times.request},
                                           {responseTimeName, times.response},
                                           {secondaryKeyName, UserInformationBytes{std::move(key)}}}});
}

seconds StoredResponse::currentAge(WallTime now) const {
    return Platform::currentAge(response(), times_, now);
}

bool StoredResponse::isFresh(WallTime now, const CacheControl& requestDirectives) const {
    if (requestDirectives.noCache || parseCacheControl(fieldValue(response(), "cache-control")).noCache) {
        return false;
    }
    const auto age = currentAge(now);
    const auto lifetime = freshnessLifetime(response(), times_.response).value_or(seconds{0});
    return lifetime > age + requestDirectives.minFresh.value_or(seconds{0}) &&
           (!requestDirectives.maxAge || age <= *requestDirectives.maxAge);
}

std::shared_ptr<const HttpRequest> StoredResponse::validationRequest(const HttpRequest& request) const {
    if (!hasValidator(response())) {
        return nullptr;
    }
    auto conditional = request;
    if (const auto tag = fieldValue(response(), "etag"); !tag.empty()) {
        conditional = std::move(conditional).withHeader("If-None-Match", tag);
    }
    if (const auto date = fieldValue(response(), "last-modified"); !date.empty()) {
        conditional = std::move(conditional).withHeader("If-Modified-Since", date);
    }
    return conditional.encodingError() ? nullptr : std::make_shared<const HttpRequest>(std::move(conditional));
}

std::optional<HttpResponse> StoredResponse::freshenedBy(const HttpResponse& validation) const {
    const auto tag = fieldValue(validation, "etag");
    if (!tag.empty() && !weaklyMatch(tag, fieldValue(response(), "etag"))) {
        return std::nullopt;
    }
    auto freshened = response();
    freshened.headers.erase("age");
    for (const auto& [name, value] : validation.headers) {
        if (!describesBody(name) && !isOfConnection(name)) {
            freshened.headers.insert_or_assign(name, value);
        }
    }
    return freshened;
}

}  // namespace Tarnwick_API::Platform
