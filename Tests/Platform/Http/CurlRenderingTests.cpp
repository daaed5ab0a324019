#include <Tarnwick_API/Platform/Http/HttpRequest.hpp>

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace Tarnwick_API::Platform;

std::string rendering(HttpMethod method, const std::string& url, const Parameters& parameters,
                      ParameterEncoding encoding, HttpHeaders headers, const HttpHeaders& sessionHeaders = {}) {
    return HttpRequest{method, Url::fromString(url).value(), parameters, encoding, std::move(headers)}.curlRendering(
        sessionHeaders);
}

const HttpHeaders sessionHeaders{{"Accept-Encoding", "gzip;q=1.0, compress;q=0.5"}, {"Host", "session"}, {"X", "\""}};

TEST(CurlRendering, ShowsMethodHeadersBodyAndUrl) {
    EXPECT_EQ(
        rendering(HttpMethod::post, "https://api.example.test/vb/oauth/access_token",
                  {{"x_auth_password", "p/q\"r\\"}, {"x_auth_username", "bob@example.test"}}, ParameterEncoding::json,
                  {{"Accept", "application/json"},
                   {"Host", "api.example.test"},
                   {"Cookie", "secret"},
                   {"cookie", "kept"},
                   {"Authorization", R"(OAuth x="1\0")"}},
                  sessionHeaders),
        R"($ curl -v \
	-X POST \
	-H "Accept: application/json" \
	-H "Accept-Encoding: gzip;q=1.0, compress;q=0.5" \
	-H "Authorization: OAuth x=\"1\0\"" \
	-H "Content-Type: application/json" \
	-H "Host: api.example.test" \
	-H "X: \"" \
	-H "cookie: kept" \
	-d "{\"x_auth_password\":\"p\/q\\\"r\\\\",\"x_auth_username\":\"bob@example.test\"}" \
	"https://api.example.test/vb/oauth/access_token")");
}

TEST(CurlRendering, LeavesOutWhatTheRequestLacks) {
    EXPECT_EQ(rendering(HttpMethod::get, "https://h/p", {{"a", "b c"}}, ParameterEncoding::url, {}),
              "$ curl -v \\\n\t\"https://h/p?a=b%20c\"");
    EXPECT_EQ(rendering(HttpMethod::post, "https://h/p", {}, ParameterEncoding::url, {{"Content-Type", "a"}}),
              "$ curl -v \\\n\t-X POST \\\n\t-H \"Content-Type: a\" \\\n\t-d \"\" \\\n\t\"https://h/p\"");
    EXPECT_EQ(rendering(HttpMethod::get, "/p", {}, ParameterEncoding::url, {}, sessionHeaders),
              "$ curl command could not be created");
}

}  // namespace
