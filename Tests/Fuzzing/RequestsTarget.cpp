// What goes out, and what the log shows of it: bodies and queries say what the parameters say, and nothing in the log
// depends on a password.

#include <Platform/Http/Requests/QueryEncoding.hpp>
#include <Platform/Http/Transfers/HeaderList.hpp>
#include <Platform/Json/JsonWriter.hpp>
#include <Platform/Text/Utf8.hpp>

#include "FuzzTarget.hpp"
#include "PasswordMask.hpp"

#include <nlohmann/json.hpp>

using namespace Tarnwick_API::Platform;
using nlohmann::json;

std::string logged(Parameters parameters, const char* name, const std::string& password, const HttpHeaders& headers) {
    parameters.insert_or_assign(name, password);
    parameters.insert_or_assign("region", "US");  // as in every request
    const auto url = Url::fromString("https://h/vb/users").value();
    const HttpRequest request{HttpMethod::post, url, parameters, ParameterEncoding::json, {}};
    const auto rendering = request.curlRendering(headers);
    auto masked = Tarnwick_API::obfuscateLoginString(rendering);
    require(Tarnwick_API::obfuscateLoginString(masked) == masked, "what is masked stays as it is");
    require(masked.size() <= 2 * rendering.size(), "a mask takes little room");
    return masked;
}

void fuzz(FuzzInput input) {
    const HttpHeaders headers{{input.text(), input.text()}, {"User-Agent", input.text()}};
    const auto password = input.text();
    const auto real = input.number<double>();
    Parameters parameters{{"list", ParameterValue::List{real, ParameterValue::Map{{password, real > 1}}, INT64_MIN}}};
    json expected{{"list", {real, {{replaceInvalidUtf8(password), real > 1}}, INT64_MIN}}};
    while (!input.isEmpty() && parameters.size() < 8) {
        const auto key = replaceInvalidUtf8(input.text());
        const auto text = input.text();
        parameters.insert_or_assign(key, text);
        expected[key] = replaceInvalidUtf8(text);
    }
    const auto body = encodeJson(parameters);
    require(!body || json::parse(*body, nullptr, false) == expected, "a body says what the parameters say");
    const auto url = Url::fromString("https://h/").value();
    const HttpRequest request{HttpMethod::get, url, parameters, ParameterEncoding::url, headers};
    require(Url::fromString(request.url().absoluteString()).has_value(), "a query leaves a URL");
    HeaderList lines;
    lines.add(headers.begin()->first, headers.begin()->second);
    require(request.encodingError() || std::strpbrk(lines.get()->data, "\r\n") == nullptr, "a header is one line");
    for (const auto* const name : {"password", "new_password"}) {
        require(!body || logged(parameters, name, password, headers) == logged(parameters, name, "", headers),
                "nothing in the log depends on a password");
    }
}
