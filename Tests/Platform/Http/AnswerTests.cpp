#include <Tarnwick_API/Platform/Cache/UrlCache.hpp>
#include <Tarnwick_API/Platform/Json/Json.hpp>

#include "SessionFixture.hpp"

#include <array>

#include <gmock/gmock.h>

namespace {

using namespace Tarnwick_API::Platform;
using testing::ElementsAre;
using testing::Pair;
using Then = ScriptedAnswer::Then;

class Answer : public SessionFixture {
protected:
    HttpAnswer answerTo(ScriptedAnswer scripted, HttpMethod method = HttpMethod::get) {
        // A server and a session for each: on a connection used before, a request that gets no answer is sent again.
        ScriptedServer server;
        server.answer(std::move(scripted));
        return exchange(*makeHttpSession(configuration), request(server.url() + "/", method));
    }

    HttpSessionConfiguration configuration = plainConfiguration();
};

/// "hello" by gzip.
const std::string helloGzip{
    "\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\x03\xcb\x48\xcd\xc9\xc9\x07\x00\x86\xa6\x10\x36\x05\x00\x00\x00", 25};

/// "hello" as a zlib stream.
const std::string helloDeflate{"\x78\x9c\xcb\x48\xcd\xc9\xc9\x07\x00\x06\x2c\x02\x15", 13};

TEST_F(Answer, IsHandedOnWhole) {
    struct Row {
        std::string bytes;
        std::int64_t status;
        std::string body;
    };
    const std::string gzipHead = "HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 25\r\n\r\n";
    const Row rows[] = {
        {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\nhello", 200, "hello"},
        {"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n", 200, ""},
        {"HTTP/1.0 200 OK\r\n\r\nuntil the end", 200, "until the end"},
        {"HTTP/1.1 404 No\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nhel\r\n2\r\nlo\r\n0\r\nX-Trailer: 1\r\n\r\n", 404,
         "hello"},
        {"HTTP/1.1 401 No\r\nWWW-Authenticate: Basic realm=\"x\"\r\nContent-Length: 2\r\n\r\nno", 401, "no"},
        {"HTTP/1.1 503 Busy\r\nContent-Length: 1\r\n\r\n\xFF", 503, "\xFF"},
        {"HTTP/1.1 204 None\r\n\r\n", 204, ""},
        {"HTTP/1.1 205 Reset\r\nContent-Length: 4\r\n\r\nbody", 205, ""},
        {"HTTP/1.1 202 Later\r\nContent-Length: 4\r\n\r\nbody", 202, "body"},
        {"HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Hints\r\nX-Hint: 1\r\n\r\nHTTP/1.1 200 OK\r\nContent-Length: 1\r\n"
         "\r\n1",
         200, "1"},
        {gzipHead + helloGzip, 200, "hello"},
        {"HTTP/1.0 200 OK\r\nContent-Encoding: identity, X-GZIP\r\n\r\n" + helloGzip + helloGzip, 200, "hellohello"},
        {"HTTP/1.0 200 OK\r\nContent-Encoding: deflate\r\n\r\n" + helloDeflate, 200, "hello"},
        {"HTTP/1.0 200 OK\r\nContent-Encoding: deflate\r\n\r\n" + helloDeflate.substr(2, 7), 200, "hello"},
        {"HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nContent-Length: 0\r\n\r\n", 200, ""},
        {"HTTP/1.1 304 Same\r\nContent-Encoding: gzip\r\nContent-Length: 25\r\n\r\n", 304, ""},
        {"HTTP/1.1 200 OK\r\nContent-Length: 5\r\nContent-Length: 5, 5\r\n\r\nhello", 200, "hello"},
        {"HTTP/1.0 200 OK\r\nContent-Type: application/json; x=y\r\n\r\n{\"a\":1}\n", 200, "{\"a\":1}\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes);
        const auto answer = answerTo({row.bytes, Then::close});
        EXPECT_EQ(errorName(answer), "none");
        ASSERT_TRUE(answer.response);
        EXPECT_EQ(answer.response->status, row.status);
        EXPECT_FALSE(answer.response->headers.contains("x-hint"));
        EXPECT_FALSE(answer.response->headers.contains("x-trailer"));
        EXPECT_EQ(answer.body, row.body);
    }
    EXPECT_EQ(errorName(answerTo({gzipHead}, HttpMethod::head)), "none");
}

TEST_F(Answer, HasHeadersInLowerCaseAndJoined) {
    const auto answer =
        answerTo({"HTTP/1.1 200 OK\r\nX-Two: a\r\nDATE:today \r\nx-two:b\r\nX-Fold: c\r\n d\r\n "
                  "\r\nX-Empty:\r\n\t\r\nX-Below:\r\n e"
                  "\r\nContent-Length: 0\r\n\r\n"});
    EXPECT_THAT(answer.response.value().headers,
                ElementsAre(Pair("content-length", "0"), Pair("date", "today"), Pair("x-below", "e"),
                            Pair("x-empty", ""), Pair("x-fold", "c d"), Pair("x-two", "a, b")));
}

TEST_F(Answer, ThatIsCutShortOrBrokenIsAnError) {
    struct Row {
        std::string bytes;
        std::string error;
        bool hasResponse;
        std::string body;
    };
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const Row rows[] = {
        {"", "connectionLost", false, ""},
        {"HTT", "connectionLost", false, ""},
        {"HTTP/1.1 200", "connectionLost", false, ""},
        {ok, "connectionLost", false, ""},
        {ok + "Content-Len", "connectionLost", false, ""},
        {ok + "Content-Length: 0\r\n", "connectionLost", false, ""},
        {ok + "Content-Length: 5\r\n\r\n", "connectionLost", true, ""},
        {ok + "Content-Length: 5\r\n\r\nhell", "connectionLost", true, "hell"},
        {ok + "Transfer-Encoding: chunked\r\n\r\n5\r\nhel", "connectionLost", true, "hel"},
        {ok + "Transfer-Encoding: chunked\r\n\r\n3\r\nhel\r\n", "connectionLost", true, "hel"},
        {"HTTP/1.1 103 Hints\r\nX: 1\r\n\r\n", "connectionLost", false, ""},
        {"SSH-2.0-OpenSSH\r\nsecret", "badAnswer", false, ""},
        {"HTTP/1.1 199 Odd\r\nContent-Length: 0\r\n\r\n", "connectionLost", false, ""},
        {ok + "Content-Encoding: gzip\r\nContent-Length: 5\r\n\r\nhello", "badAnswer", true, ""},
        {ok + "Content-Encoding: compress\r\nContent-Length: 5\r\n\r\nhello", "badAnswer", true, ""},
        {ok + "Content-Encoding: gzip, gzip\r\n\r\n" + helloGzip, "badAnswer", true, ""},
        {ok + "Content-Encoding: gzip\r\n\r\n" + helloGzip.substr(0, 10), "badAnswer", true, ""},
        {ok + "Content-Encoding: gzip\r\n\r\n" + helloGzip.substr(0, 24), "badAnswer", true, "hello"},
        {ok + "Content-Encoding: gzip\r\n\r\n" + helloGzip + "x", "badAnswer", true, "hello"},
        {ok + "Content-Encoding: deflate\r\n\r\n" + helloDeflate + helloDeflate, "badAnswer", true, "hello"},
        {ok + "Content-Type: a/b+JSON\r\n\r\n{\"a\":1", "connectionLost", true, "{\"a\":1"},
        {ok + "Transfer-Encoding: chunked\r\n\r\nx\r\nhello", "badAnswer", true, ""},
        {ok + "Transfer-Encoding: chunked\r\n\r\n5\r\nhello!\r\n", "badAnswer", true, "hello"},
        {ok + "Transfer-Encoding: gzip, chunked\r\n\r\n0\r\n\r\n", "badAnswer", false, ""},
        {ok + "Transfer-Encoding: identity\r\nContent-Length: 5\r\n\r\nhello", "badAnswer", false, ""},
        {ok + "Content-Length: 5\r\nContent-Length: 3\r\n\r\nhello", "badAnswer", false, ""},
        {ok + "Content-Length: 3, 5\r\n\r\nhello", "badAnswer", false, ""},
        {ok + "Content-Length: 3xyz\r\n\r\nhello", "badAnswer", false, ""},
        {ok + "Content-Length: -1\r\n\r\nhello", "badAnswer", false, ""},
        {ok + "X: a\rb\r\nContent-Length: 5\r\n\r\nhello", "badAnswer", false, ""},
        {ok + "X: a" + std::string(1, '\0') + "b\r\nContent-Length: 5\r\n\r\nhello", "badAnswer", false, ""},
        {"HTTP/1.1 101 Switching\r\n\r\nhello", "badAnswer", false, ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.bytes);
        const auto answer = answerTo({row.bytes, Then::close});
        EXPECT_EQ(errorName(answer), row.error) << (answer.error ? answer.error->description : "");
        EXPECT_EQ(answer.response.has_value(), row.hasResponse);
        EXPECT_EQ(answer.body, row.body);
        EXPECT_TRUE(!answer.error || answer.error->description.find("secret") == std::string::npos);
    }
}

TEST_F(Answer, OverTheLimitIsRefused) {
    configuration.maximumBodySize = 5;
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    EXPECT_EQ(answerTo(okAnswer("hello")).body, "hello");
    for (const auto& bytes : {
             ok + "Content-Length: 6\r\n\r\nhello!",
             ok + "Transfer-Encoding: chunked\r\n\r\n6\r\nhello!\r\n0\r\n\r\n",
             ok + "Content-Length: 99999999999999\r\n\r\nhello!",
         }) {
        const auto answer = answerTo({bytes, Then::hold});
        EXPECT_EQ(errorName(answer), "tooLarge") << bytes;
        EXPECT_EQ(answer.body, "");
    }
    configuration.maximumBodySize = 4;
    EXPECT_EQ(errorName(answerTo({ok + "Content-Encoding: gzip\r\nContent-Length: 25\r\n\r\n" + helloGzip})),
              "tooLarge");
}

TEST_F(Answer, WithAHeadOverTheLimitIsRefused) {
    configuration.maximumHeadSize = 1000;
    const std::string field = "X: " + std::string(2'000, 'x') + "\r\n";
    for (const std::string before : {"HTTP/1.1 200 OK\r\n", "HTTP/1.1 103 Hints\r\n",
                                     "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n0\r\n"}) {
        EXPECT_EQ(errorName(answerTo({before + field, Then::hold})), "tooLarge") << before;
    }
}

TEST_F(Answer, ThatBeginsWithAContinuationEndsItsOwnRequestAlone) {
    ScriptedServer server;
    const auto session = makeHttpSession(configuration);
    for (int round = 0; round < 3; ++round) {
        server.answer(okAnswer("good"));
        server.answer({"HTTP/1.1 200 OK\r\n x: y\r\nContent-Length: 0\r\n\r\n", Then::close});
        EXPECT_EQ(exchange(*session, request(server.url())).body, "good");
        EXPECT_EQ(errorName(exchange(*session, request(server.url()))), "badAnswer");
    }
}

TEST_F(Answer, LeavesRoomForTheParser) {
    const std::string text(100'000, '1');
    configuration.maximumBodySize = 2 * text.size();
    const std::string chunk = "186a0\r\n" + text + "\r\n";
    const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n" + chunk + chunk + "0\r\n\r\n";
    for (const auto& scripted : {okAnswer(text), okAnswer("1"), ScriptedAnswer{chunked}}) {
        const auto body = answerTo(scripted).body.value();
        EXPECT_GE(body.capacity() - body.size(), JsonDocument::padding) << body.size();
        EXPECT_LE(body.capacity(), configuration.maximumBodySize + JsonDocument::padding);
    }
}

TEST_F(Answer, IsKeptWhenItIsKnownToBeWhole) {
    const std::string ok = "HTTP/1.0 200 OK\r\nCache-Control: max-age=60\r\n";
    for (const auto& [bytes, requests] : {
             std::pair{ok + "Content-Type: text/plain\r\n\r\nhello", 2U},
             {ok + "Content-Type: application/json\r\n\r\n12", 2U},
             {ok + "Content-Type: application/json\r\n\r\n", 2U},
             {ok + "Content-Type: application/json\r\n\r\n[12]", 1U},
             {std::string{ok}.append("Content-Encoding: gzip\r\n\r\n").append(helloGzip), 1U},
             {ok + "Content-Length: 5\r\n\r\nhello", 1U},
         }) {
        ScriptedServer server;
        server.answerAlways({bytes, Then::close});
        configuration.cache = std::make_shared<UrlCache>(100'000, 0, std::nullopt);
        const auto session = makeHttpSession(configuration);
        EXPECT_EQ(errorName(exchange(*session, request(server.url()))), "none") << bytes;
        exchange(*session, request(server.url()));
        EXPECT_EQ(server.requests().size(), requests) << bytes;
    }
}

TEST_F(Answer, IsKeptForItsOwnUrlAndWholeQuestionsAlone) {
    ScriptedServer server;
    server.answer({"HTTP/1.1 302 Moved\r\nLocation: /n\r\nContent-Length: 0\r\n\r\n"});
    server.answerAlways(okAnswer("x", "Cache-Control: max-age=60\r\n"));
    configuration.cache = std::make_shared<UrlCache>(100'000, 0, std::nullopt);
    const auto session = makeHttpSession(configuration);
    EXPECT_EQ(exchange(*session, request(server.url())).body, "x");
    EXPECT_EQ(exchange(*session, request(server.url())).source, HttpAnswer::Source::network);
    EXPECT_EQ(exchange(*session, request(server.url())).source, HttpAnswer::Source::cache);
    EXPECT_EQ(server.requests().size(), 3U);
    for (const auto* const name :
         {"Range", "If-Match", "If-None-Match", "If-Modified-Since", "If-Unmodified-Since", "if-range"}) {
        const auto own = request(server.url(), HttpMethod::get, {}, ParameterEncoding::url, {{name, "x"}});
        EXPECT_EQ(exchange(*session, own).source, HttpAnswer::Source::network) << name;
    }
}

TEST_F(Answer, KeepsWhatDescribesItsBodyWhenItIsConfirmed) {
    ScriptedServer server;
    for (int times = 0; times < 2; ++times) {
        server.answer(
            okAnswer("good", "Content-Type: a/b\r\nETag: \"a\"\r\nAge: 9\r\nX: old\r\nCache-Control: no-cache\r\n"));
    }
    server.answer(
        {"HTTP/1.1 304 Same\r\nContent-Type: c/d\r\nContent-Length: 9\r\nContent-Encoding: gzip\r\n"
         "Content-Range: bytes 1-2/3\r\nKeep-Alive: 1\r\nX: new\r\nCache-Control: max-age=60\r\n\r\n"});
    configuration.cache = std::make_shared<UrlCache>(100'000, 0, std::nullopt);
    const auto session = makeHttpSession(configuration);
    for (const auto source : {HttpAnswer::Source::network, HttpAnswer::Source::network, HttpAnswer::Source::revalidated,
                              HttpAnswer::Source::cache}) {
        const auto asked = request(server.url());
        const auto answer = exchange(*session, asked);
        EXPECT_EQ(answer.request, asked) << "whatever was sent for it";
        EXPECT_EQ(answer.source, source);
        EXPECT_EQ(answer.body, "good");
        auto headers = answer.response.value_or(HttpResponse{}).headers;
        const auto age = headers.extract("age");
        EXPECT_EQ(age.empty() ? "none" : age.mapped(), source == HttpAnswer::Source::network ? "9"
                                                       : source == HttpAnswer::Source::cache ? "0"
                                                                                             : "none");
        if (source != HttpAnswer::Source::network) {
            EXPECT_THAT(headers, ElementsAre(Pair("cache-control", "max-age=60"), Pair("content-length", "4"),
                                             Pair("content-type", "a/b"), Pair("etag", "\"a\""), Pair("x", "new")));
        }
    }
}

TEST_F(Answer, NeedsAServer) {
    const auto session = makeHttpSession(configuration);
    std::string gone;
    {
        const ScriptedServer server;
        gone = server.url();
    }
    EXPECT_EQ(errorName(exchange(*session, request(gone))), "cannotConnect");
    EXPECT_EQ(errorName(exchange(*session, request("http://host.invalid/"))), "unresolvedHost");
}

}  // namespace
