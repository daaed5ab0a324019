#include "SessionFixture.hpp"
#include <Platform/Http/Transfers/Redirects.hpp>

#include <gmock/gmock.h>

namespace {

using namespace Tarnwick_API::Platform;

/// "GET", "PUT+" with body, "-" when not followed.
std::string nextOf(HttpMethod method, std::int64_t status, std::string_view location = "https://h/n") {
    const HttpRequest request{method, Url::fromString("https://h/p").value(), {{"a", 1}}, ParameterEncoding::url, {}};
    const auto hop = nextHop(request, nullptr, status, location);
    return hop ? std::string{name(hop->method)} + (hop->sendsBody ? "+" : "") : "-";
}

TEST(Redirects, KeepMethodAndBodyByStatus) {
    struct Row {
        std::int64_t status;
        const char *get, *post, *put, *delete_;
    };
    const Row rows[] = {
        {200, "-", "-", "-", "-"},
        {300, "-", "-", "-", "-"},
        {301, "GET", "GET", "PUT+", "DELETE"},
        {302, "GET", "GET", "PUT+", "DELETE"},
        {303, "GET", "GET", "GET", "GET"},
        {304, "-", "-", "-", "-"},
        {305, "GET", "POST+", "PUT+", "DELETE"},
        {306, "GET", "POST+", "PUT+", "DELETE"},
        {307, "GET", "POST+", "PUT+", "DELETE"},
        {308, "GET", "POST+", "PUT+", "DELETE"},
        {309, "-", "-", "-", "-"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.status);
        EXPECT_EQ(nextOf(HttpMethod::get, row.status), row.get);
        EXPECT_EQ(nextOf(HttpMethod::post, row.status), row.post);
        EXPECT_EQ(nextOf(HttpMethod::put, row.status), row.put);
        EXPECT_EQ(nextOf(HttpMethod::delete_, row.status), row.delete_);
    }
    for (const auto* location : {"", "n", "//h/n", "https:///n", "https://h/{n}"}) {
        EXPECT_EQ(nextOf(HttpMethod::get, 302, location), "-") << location;
    }
}

TEST(Redirects, KeepTheHostHeaderForHostAndPort) {
    const HttpRequest request{HttpMethod::get, Url::fromString("https://h/p").value(), {}, ParameterEncoding::url, {}};
    for (const auto& [location, isKept] : {std::pair{"https://h/n", true},
                                           {"https://H:443/n", true},
                                           {"http://h/n", true},
                                           {"https://h:444/n", false},
                                           {"http://h:443/n", false},
                                           {"https://i/n", false}}) {
        EXPECT_EQ(nextHop(request, nullptr, 302, location)->keepsHost, isKept) << location;
    }
}

class RedirectsOnTheWire : public SessionFixture {
protected:
    static ScriptedAnswer redirect(int status, const std::string& location) {
        return {"HTTP/1.1 " + std::to_string(status) + " Moved\r\nLocation: " + location +
                "\r\nContent-Length: 4\r\n\r\nmove"};
    }

    ScriptedServer server;
    std::shared_ptr<HttpSession> session = makeHttpSession(plainConfiguration());
    const HttpHeaders headers{
        {"Authorization", "OAuth x"}, {"Host", "api.example.test"}, {"If-None-Match", "a"}, {"X", "y"}};
    const std::string accept = "Accept: */*\r\nAccept-Encoding: gzip\r\n";
};

TEST_F(RedirectsOnTheWire, SendTheBodyAgainButNotWhatConcernsTheFirstUrl) {
    server.answer(redirect(307, "#part"));
    server.answer(redirect(307, "/second?q#f"));
    server.answer(redirect(302, server.url() + "/third"));
    server.answer(okAnswer("done"));
    const auto sent =
        request(server.url() + "/first?x#y", HttpMethod::post, {{"a", 1}}, ParameterEncoding::url, headers);
    const auto answer = exchange(*session, sent);
    EXPECT_EQ(errorName(answer), "none");
    EXPECT_EQ(answer.body, "done");
    EXPECT_EQ(answer.request, sent);
    const std::string form = "Content-Type: application/x-www-form-urlencoded; charset=utf-8\r\n";
    EXPECT_THAT(server.requests(),
                testing::ElementsAre("POST /first?x HTTP/1.1\r\nHost: api.example.test\r\n" + accept +
                                         "Authorization: OAuth x\r\n" + form +
                                         "If-None-Match: a\r\nX: y\r\nContent-Length: 3\r\n\r\na=1",
                                     "POST /first?x HTTP/1.1\r\nHost: api.example.test\r\n" + accept + form +
                                         "If-None-Match: a\r\nX: y\r\nContent-Length: 3\r\n\r\na=1",
                                     "POST /second?q HTTP/1.1\r\nHost: api.example.test\r\n" + accept + form +
                                         "If-None-Match: a\r\nX: y\r\nContent-Length: 3\r\n\r\na=1",
                                     "GET /third HTTP/1.1\r\nHost: api.example.test\r\n" + accept + "X: y\r\n\r\n"));
    EXPECT_EQ(server.connections(), 1U);
}

TEST_F(RedirectsOnTheWire, DropAHostHeaderMeantForAnother) {
    server.answer(redirect(308, "http://localhost:" + std::to_string(server.port()) + "/n"));
    server.answer(okAnswer(""));
    auto configuration = plainConfiguration();
    configuration.connectTo = {"localhost:" + std::to_string(server.port()) +
                               ":127.0.0.1:" + std::to_string(server.port())};
    const auto other = makeHttpSession(configuration);
    EXPECT_EQ(errorName(exchange(*other, request(server.url(), HttpMethod::put, {}, ParameterEncoding::json, headers))),
              "none");
    EXPECT_EQ(server.requests().back(),
              "PUT /n HTTP/1.1\r\nHost: localhost:" + std::to_string(server.port()) + "\r\n" + accept +
                  "Content-Type: application/json\r\nIf-None-Match: a\r\nX: y\r\nContent-Length: 2\r\n\r\n{}");
}

TEST_F(RedirectsOnTheWire, EndAfterTwenty) {
    server.answerAlways(redirect(302, "/again"));
    EXPECT_EQ(errorName(exchange(*session, request(server.url()))), "tooManyRedirects");
    EXPECT_EQ(server.requests().size(), 21U);
}

TEST_F(RedirectsOnTheWire, EndAtAnswersThatLeadNowhere) {
    const ScriptedAnswer answers[] = {
        redirect(300, "/n"),
        redirect(304, "/n"),
        redirect(302, "http://"),
        {"HTTP/1.1 302 Found\r\nContent-Length: 4\r\n\r\nmove"},
    };
    for (const auto& scripted : answers) {
        SCOPED_TRACE(scripted.bytes);
        const auto before = server.requests().size();
        // 304 has no body, whatever its length says: the connection is of no more use.
        server.answer({scripted.bytes, ScriptedAnswer::Then::close});
        const auto answer = exchange(*session, request(server.url()));
        EXPECT_EQ(errorName(answer), "none");
        EXPECT_EQ(answer.response.value().status / 100, 3);
        EXPECT_EQ(answer.body, answer.response->status == 304 ? "" : "move");
        EXPECT_EQ(server.requests().size(), before + 1);
    }
    server.answer(redirect(302, "ftp://127.0.0.1/n"));
    EXPECT_EQ(errorName(exchange(*session, request(server.url()))), "other");
}

}  // namespace
