#include "SessionFixture.hpp"

#include <limits>

#include <gmock/gmock.h>

namespace {

using namespace Tarnwick_API::Platform;
using testing::ElementsAre;

class RequestWire : public SessionFixture {
protected:
    /// The bytes of `request`'s only hop, sent with `headers` as the session's own.
    std::string bytesOf(const std::shared_ptr<const HttpRequest>& sent, HttpHeaders headers = {}) {
        auto configuration = plainConfiguration();
        configuration.additionalHeaders = std::move(headers);
        const auto before = server.requests().size();
        server.answer(okAnswer(""));
        EXPECT_EQ(errorName(exchange(*makeHttpSession(configuration), sent)), "none");
        const auto requests = server.requests();
        return requests.size() == before + 1 ? requests.back() : "not exactly one request";
    }

    ScriptedServer server;
    const std::string host = "Host: " + server.authority() + "\r\n";
    const HttpHeaders defaults{{"Accept-Encoding", "gzip;q=1.0, compress;q=0.5"}, {"User-Agent", "Demo/7.1"}};
};

TEST_F(RequestWire, SendsTheseBytes) {
    const std::string accept = "Accept: */*\r\n";
    const std::string gzip = "Accept-Encoding: gzip\r\n";
    const Parameters parameters{{"b", "ü&"}, {"a", 1}};
    const std::string json = R"({"a":1,"b":"ü&"})";
    // NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order in which a request is read
    struct Row {
        HttpMethod method;
        std::string target;
        Parameters parameters;
        ParameterEncoding encoding;
        HttpHeaders headers;
        std::string expected;
    };
    const Row rows[] = {
        {HttpMethod::get,
         "/a/../b?x=%20#f",
         parameters,
         ParameterEncoding::url,
         {},
         "GET /a/../b?x=%20&a=1&b=%C3%BC%26 HTTP/1.1\r\n" + host + accept + gzip + "\r\n"},
        {HttpMethod::get,
         "/b",
         parameters,
         ParameterEncoding::json,
         {},
         "GET /b HTTP/1.1\r\n" + host + accept + gzip + "Content-Type: application/json\r\nContent-Length: 17\r\n\r\n" +
             json},
        {HttpMethod::post,
         "/b",
         parameters,
         ParameterEncoding::json,
         {{"Accept", "application/json"}},
         "POST /b HTTP/1.1\r\n" + host + gzip +
             "Accept: application/json\r\nContent-Type: application/json\r\nContent-Length: 17\r\n\r\n" + json},
        {HttpMethod::put,
         "/b",
         parameters,
         ParameterEncoding::url,
         {},
         "PUT /b HTTP/1.1\r\n" + host + accept + gzip +
             "Content-Type: application/x-www-form-urlencoded; charset=utf-8\r\nContent-Length: 15\r\n\r\n"
             "a=1&b=%C3%BC%26"},
        {HttpMethod::post,
         "/b",
         {},
         ParameterEncoding::url,
         {{"content-type", "application/json"}},
         "POST /b HTTP/1.1\r\n" + host + accept + gzip + "content-type: application/json\r\nContent-Length: 0\r\n\r\n"},
        {HttpMethod::delete_,
         "/b",
         {},
         ParameterEncoding::url,
         {{"Content-Type", "application/json"}},
         "DELETE /b HTTP/1.1\r\n" + host + accept + gzip + "Content-Type: application/json\r\n\r\n"},
        {HttpMethod::head,
         "/b",
         {},
         ParameterEncoding::url,
         {},
         "HEAD /b HTTP/1.1\r\n" + host + accept + gzip + "\r\n"},
        {HttpMethod::get,
         "/b",
         {},
         ParameterEncoding::url,
         {{"Host", "api.example.test"}, {"X-Empty", ""}, {"Content-Length", "7"}},
         "GET /b HTTP/1.1\r\nHost: api.example.test\r\n" + accept + gzip + "X-Empty:\r\n\r\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expected);
        EXPECT_EQ(bytesOf(request(server.url() + row.target, row.method, row.parameters, row.encoding, row.headers)),
                  row.expected);
    }
}

TEST_F(RequestWire, AddsTheSessionsHeadersUnlessTheRequestHasItsOwn) {
    EXPECT_EQ(bytesOf(request(server.url() + "/", HttpMethod::get, {}, ParameterEncoding::url,
                              {{"USER-agent", "Own/1"}, {"Authorization", "OAuth x=\"%26\""}}),
                      defaults),
              "GET / HTTP/1.1\r\n" + host +
                  "Accept: */*\r\nAuthorization: OAuth x=\"%26\"\r\nUSER-agent: Own/1\r\n"
                  "Accept-Encoding: gzip;q=1.0, compress;q=0.5\r\n\r\n");
}

TEST_F(RequestWire, SendsNothingThatCannotBeSent) {
    const auto session = makeHttpSession(plainConfiguration());
    const std::shared_ptr<const HttpRequest> faulty[] = {
        request(server.url(), HttpMethod::get, {}, ParameterEncoding::url, {{"X", "a\r\nY: b"}}),
        request("/relative"),
        request(server.url(), HttpMethod::head, {}, ParameterEncoding::json),
        request(server.url(), HttpMethod::post, {{"r", std::numeric_limits<double>::quiet_NaN()}},
                ParameterEncoding::json),
    };
    for (const auto& sent : faulty) {
        const auto answer = exchange(*session, sent);
        EXPECT_EQ(errorName(answer), "encoding");
        EXPECT_EQ(answer.body, "");
        EXPECT_EQ(answer.request, sent);
        EXPECT_FALSE(answer.response);
    }
    std::string longUrl = server.url() + "/";
    longUrl.resize(9'000'000, 'x');
    const auto tooLong = exchange(*session, request(longUrl));
    EXPECT_THAT(tooLong.error.value().description, testing::HasSubstr("option URL"));
    auto configuration = plainConfiguration();
    configuration.additionalHeaders = {{"User-Agent", "a\nb"}};
    EXPECT_EQ(errorName(exchange(*makeHttpSession(configuration), request(server.url()))), "encoding");
    configuration = plainConfiguration();
    configuration.connectTo = {"b\u00FCcher.test:443:localhost:443"};
    EXPECT_EQ(errorName(exchange(*makeHttpSession(configuration), request(server.url()))), "encoding");
    configuration = plainConfiguration();
    configuration.allowsPlainHttp = false;
    EXPECT_EQ(errorName(exchange(*makeHttpSession(configuration), request(server.url()))), "other");
    EXPECT_THAT(server.requests(), ElementsAre());
}

TEST_F(RequestWire, SendsALargeBodyAtOnce) {
    const std::string text(3'000'000, 'x');
    const auto bytes = bytesOf(request(server.url(), HttpMethod::post, {{"t", text}}));
    EXPECT_EQ(bytes.find("Expect"), std::string::npos);
    EXPECT_EQ(bytes.substr(bytes.find("\r\n\r\n") + 4), "t=" + text);
}

}  // namespace
