// The fields by which answers are kept: whatever they say, ages stay ages, what is stored is found by its own request
// alone, and nothing stale gets fresh again.

#include <Platform/Http/Caching/CachingRules.hpp>
#include <Platform/Http/Caching/HttpDate.hpp>
#include <Platform/Http/Caching/StoredResponse.hpp>
#include <Platform/Text/AsciiText.hpp>

#include "FuzzTarget.hpp"

using namespace Tarnwick_API::Platform;
using std::chrono::seconds;

void checkDirectives(const std::string& value) {
    const auto control = parseCacheControl(value);
    const auto inCapitals = parseCacheControl(asciiUpperCased(value));
    require(inCapitals.noStore == control.noStore && inCapitals.maxAge == control.maxAge, "letters are in any case");
    const auto age = control.maxAge.value_or(seconds{0});
    require(age >= seconds{0} && age <= seconds{std::int64_t{1} << 31U}, "an age is one");
    const auto stricter = parseCacheControl("no-store, max-age=0," + value);
    require(stricter.noStore && stricter.maxAge == seconds{0}, "the strictest of several directives counts");
}

void checkDate(const std::string& text, std::chrono::sys_seconds now) {
    const auto date = parseHttpDate(text, now);
    if (date && *date >= std::chrono::sys_days{std::chrono::year{1000} / 1 / 1}) {
        const std::time_t time = date->time_since_epoch().count();
        std::tm parts{};
        gmtime_r(&time, &parts);
        char written[64];
        const auto size = std::strftime(written, sizeof written, "%a, %d %b %Y %H:%M:%S GMT", &parts);
        require(parts.tm_year >= 8100 || parseHttpDate({written, size}, now) == date, "a date reads the same again");
    }
}

void fuzz(FuzzInput input) {
    // Up to 70000 years before and after 1970, as a file may have them.
    const WallTime requested{std::chrono::microseconds{input.number<std::int64_t>() / 4}};
    const WallTime received = requested + std::chrono::milliseconds{input.number<std::int32_t>()};
    const WallTime now{std::chrono::microseconds{input.number<std::int64_t>() / 4}};
    HttpResponse response{200, {}};
    for (const auto* const name : {"cache-control", "date", "expires", "age", "vary", "etag", "last-modified"}) {
        response.headers.emplace(name, input.text());
    }
    const HttpHeaders own{{"Cache-Control", input.text()}, {"Accept", input.text()}};
    const HttpHeaders session{{"Accept-Language", input.text()}};
    const HttpHeaders another{{"Authorization", "of another user"}};
    const HttpRequest request{HttpMethod::get, Url::fromString("https://h/p").value(), {}, ParameterEncoding::url, own};
    const RequestFields fields{request, session};

    checkDirectives(response.headers["cache-control"]);
    checkDate(response.headers["date"], std::chrono::floor<seconds>(received));
    const auto& vary = response.headers["vary"];
    require(fields.secondaryKey(vary) == fields.secondaryKey(asciiUpperCased(vary) + "," + vary), "names are a set");

    const auto entry = StoredResponse::entry(response, std::make_shared<const Bytes>(), fields, {requested, received});
    const auto stored = StoredResponse::read(entry, fields);
    require(stored && stored->response().headers == response.headers, "what is stored is found");
    require(!StoredResponse::read(entry, {request, another}), "what is stored for one user is not found by another");
    const auto directives = requestDirectives(fields);
    require(stored->currentAge(now) >= seconds{0}, "an age is no time to come");
    require(stored->isFresh(now, directives) || !stored->isFresh(now + seconds{1}, directives), "nothing gets fresh");
    const auto validation = stored->validationRequest(request);
    require(!validation || !validation->encodingError(), "a validation can be sent");
    const auto freshened = stored->freshenedBy({304, response.headers});
    require(freshened && freshened->status == 200, "what is freshened is the stored response");
}
