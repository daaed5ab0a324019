#include <Platform/Http/Caching/CacheControl.hpp>
#include <Platform/Http/Caching/HttpDate.hpp>
#include <Platform/Http/Caching/StoredResponse.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <variant>

namespace Tarnwick_API::Platform {

namespace {

using std::chrono::seconds;

constexpr const char* requestTimeKey = "HttpRequestTime";
constexpr const char* responseTimeKey = "HttpResponseTime";
constexpr const char* requestIdentityKey = "HttpRequestIdentity";

std::string_view field(const HttpResponse& response, std::string_view lowerCaseName) {
    const auto header = response.headers.find(lowerCaseName);
    return header == response.headers.end() ? std::string_view{} : std::string_view{header->second};
}

bool hasValidator(const HttpResponse& response) {
    return !field(response, "etag").empty() || !field(response, "last-modified").empty();
}

/// Headers of one connection, which no answer keeps.
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

/// How long the answer is good for from the moment the server made it; none when it doesn't say.
std::optional<seconds> lifetime(const HttpResponse& response, WallTime responseTime) {
    if (const auto maxAge = parseCacheControl(field(response, "cache-control")).maxAge) {
        return maxAge;
    }
    if (response.headers.contains("expires")) {
        const auto expires = parseHttpDate(field(response, "expires"));
        const auto date = parseHttpDate(field(response, "date")).value_or(std::chrono::floor<seconds>(responseTime));
        return expires ? *expires - date : seconds{0};
    }
    return std::nullopt;
}

/// The age that an answer had already when it came.
WallTime::duration initialAge(const HttpResponse& response, const ExchangeTimes& times) {
    const auto zero = WallTime::duration::zero();
    const auto list = field(response, "age");
    const auto said = parseDeltaSeconds(list.substr(0, list.find_first_of(", "))).value_or(seconds{0});
    const auto onTheWay = said + std::max(times.response - times.request, zero);
    const auto date = parseHttpDate(field(response, "date"));
    const auto apparent = date ? std::max(times.response - WallTime{*date}, zero) : zero;
    return std::max<WallTime::duration>(onTheWay, apparent);
}

/// Whether an entity tag is weak makes no difference to a GET.
std::string_view withoutWeakness(std::string_view tag) {
    return tag.substr(tag.starts_with("W/") ? 2 : 0);
}

template <typename Value>
std::optional<Value> noted(const UserInformation& information, const char* key) {
    const auto entry = information.find(key);
    const auto* const value = entry == information.end() ? nullptr : std::get_if<Value>(&entry->second);
    return value != nullptr ? std::optional{*value} : std::nullopt;
}

}  // namespace

CacheControl requestControl(const RequestFields& fields) {
    auto control = parseCacheControl(fields.value("Cache-Control"));
    if (fields.value("Cache-Control").empty() && equalsIgnoringAsciiCase(fields.value("Pragma"), "no-cache")) {
        control.noCache = true;
    }
    return control;
}

bool mayUseCache(const HttpRequest& request, const RequestFields& fields) {
    if (request.method() != HttpMethod::get || request.body() || requestControl(fields).noStore) {
        return false;
    }
    // Parts of an answer, and questions that the host asks the server itself.
    static constexpr std::array<std::string_view, 6> names{
        "Range", "If-Match", "If-None-Match", "If-Modified-Since", "If-Unmodified-Since", "If-Range"};
    return std::all_of(names.begin(), names.end(), [&](auto name) { return fields.value(name).empty(); });
}

bool mayBeStored(const HttpResponse& response) {
    // The codes whose answer is the whole thing asked for, so that nothing else has to be understood about them.
    const auto status = response.status;
    if (status != 200 && status != 203 && status != 204) {
        return false;
    }
    if (parseCacheControl(field(response, "cache-control")).noStore ||
        field(response, "vary").find('*') != std::string_view::npos) {
        return false;
    }
    return lifetime(response, {}).has_value() || hasValidator(response);
}

std::optional<StoredAnswer> StoredAnswer::read(std::shared_ptr<const CachedUrlResponse> record,
                                               const RequestFields& fields) {
    if (!record || !record->body || !record->userInformation) {
        return std::nullopt;
    }
    const auto request = noted<WallTime>(*record->userInformation, requestTimeKey);
    const auto response = noted<WallTime>(*record->userInformation, responseTimeKey);
    const auto identity = noted<UserInformationBytes>(*record->userInformation, requestIdentityKey);
    if (!request || !response || !identity || identity->bytes != fields.identity(field(record->response, "vary"))) {
        return std::nullopt;
    }
    return StoredAnswer{std::move(record), {*request, *response}};
}

std::shared_ptr<const CachedUrlResponse> StoredAnswer::record(HttpResponse response, std::shared_ptr<const Bytes> body,
                                                              const RequestFields& fields, const ExchangeTimes& times) {
    auto identity = fields.identity(field(response, "vary"));
    std::erase_if(response.headers, [](const auto& header) { return isOfConnection(header.first); });
    return std::make_shared<const CachedUrlResponse>(CachedUrlResponse{
        .response = std::move(response),
        .body = std::move(body),
        .userInformation = UserInformation{{requestTimeKey, times.request},
                                           {responseTimeKey, times.response},
                                           {requestIdentityKey, UserInformationBytes{std::move(identity)}}}});
}

std::chrono::seconds StoredAnswer::age(WallTime now) const {
    // A clock that was set back makes an answer no younger than it was.
    const auto resident = std::max(now - times_.response, WallTime::duration::zero());
    return std::chrono::floor<seconds>(initialAge(response(), times_) + resident);
}

bool StoredAnswer::isFresh(WallTime now, const CacheControl& request) const {
    if (request.noCache || parseCacheControl(field(response(), "cache-control")).noCache) {
        return false;
    }
    const auto present = age(now);
    const auto good = lifetime(response(), times_.response).value_or(seconds{0});
    return good > present + request.minFresh.value_or(seconds{0}) && (!request.maxAge || present <= *request.maxAge);
}

std::shared_ptr<const HttpRequest> StoredAnswer::conditional(const HttpRequest& request) const {
    if (!hasValidator(response())) {
        return nullptr;
    }
    auto asking = request;
    if (const auto tag = field(response(), "etag"); !tag.empty()) {
        asking = std::move(asking).withHeader("If-None-Match", tag);
    }
    if (const auto date = field(response(), "last-modified"); !date.empty()) {
        asking = std::move(asking).withHeader("If-Modified-Since", date);
    }
    return asking.encodingError() ? nullptr : std::make_shared<const HttpRequest>(std::move(asking));
}

std::optional<HttpResponse> StoredAnswer::confirmedBy(const HttpResponse& confirmation) const {
    const auto newTag = field(confirmation, "etag");
    if (!newTag.empty() && withoutWeakness(newTag) != withoutWeakness(field(response(), "etag"))) {
        return std::nullopt;
    }
    auto confirmed = response();
    confirmed.headers.erase("age");
    for (const auto& [name, value] : confirmation.headers) {
        if (!describesBody(name) && !isOfConnection(name)) {
            confirmed.headers.insert_or_assign(name, value);
        }
    }
    return confirmed;
}

}  // namespace Tarnwick_API::Platform
