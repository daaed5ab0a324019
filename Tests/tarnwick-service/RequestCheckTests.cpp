#include "Api/RequestCheck.hpp"

#include <gtest/gtest.h>

namespace TarnwickService {
namespace {

Configuration makeConfiguration() {
    Configuration configuration;
    configuration.consumerKey = "ck";
    configuration.consumerSecret = R"(c&"s)";
    configuration.restrictedConsumerKey = "rk";
    return configuration;
}

/// Status and text of the refusal; "accepted" without one.
template <typename Check>
std::string verdict(Check check) {
    try {
        check();
    } catch (const Refusal& refusal) {
        return std::to_string(refusal.status()) + ' ' + refusal.what();
    }
    return "accepted";
}

class RequestCheckTest : public testing::Test {
protected:
    Accounts accounts;
    const Session session = accounts.openSession(1, {});
    const RequestCheck check{makeConfiguration(), "localhost:1", accounts};
};

TEST_F(RequestCheckTest, JudgesTheAuthorizationHeaderByTheByte) {
    const std::string start = R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key=")";
    const std::string alive =
        start + R"(ck",oauth_token=")" + session.token + R"(" ,oauth_signature="c&"s%26)" + session.secret + '"';
    const std::string dead = start + R"(ck",oauth_token="gone" ,oauth_signature="c&"s%26gone")";
    const std::string none = start + R"(ck", oauth_signature="c&"s%26")";
    constexpr auto required = SessionRule::required;
    constexpr auto ifGiven = SessionRule::ifGiven;
    constexpr auto ignored = SessionRule::ignored;
    struct Row {
        std::string header;
        SessionRule rule;
        std::string verdict;
    };
    const Row rows[] = {
        {alive, required, "accepted"},
        {alive, ifGiven, "accepted"},
        {none, ifGiven, "accepted"},
        {dead, ignored, "accepted"},
        {none, required, "420 Not logged in"},
        {dead, required, "420 Not logged in"},
        {dead, ifGiven, "420 Not logged in"},
        {start + R"(", oauth_signature="c&"s%26")", ignored, "420 Consumer key missing or invalid"},
        {start + R"(ckk", oauth_signature="c&"s%26")", ignored, "420 Invalid consumer key"},
        {start + R"(rk", oauth_signature="c&"s%26")", ignored, "420 Invalid consumer access rights"},
        {start + R"(ck", oauth_signature="wrong%26")", ignored, "401 Invalid signature"},
        {start + R"(ck", oauth_signature="c&"s%26more")", ignored, "401 Invalid signature"},
        {alive.substr(0, alive.size() - 2) + '"', required, "401 Invalid signature"},
    };
    for (const Row& row : rows) {
        Request request;
        request.headers = {{"authorization", row.header}};
        EXPECT_EQ(verdict([&] {
                      check.authorization(request, row.rule);
                      check.fullRights(request);
                  }),
                  row.verdict)
            << row.header;
    }
    // The separators around the signature differ with and without a token; neither may be the other's.
    for (const std::string& header :
         {start + R"(ck" ,oauth_signature="c&"s%26")", start + R"(ck",oauth_signature="c&"s%26")",
          start + R"(ck", oauth_token="t" ,oauth_signature="c&"s%26t")",
          start + R"(ck",oauth_token="t", oauth_signature="c&"s%26t")",
          start + R"(ck",oauth_token="" ,oauth_signature="c&"s%26")", start + "ck\"", std::string("OAuth "), ' ' + none,
          none + ' '}) {
        Request request;
        request.headers = {{"Authorization", header}};
        const std::string result = verdict([&] { check.authorization(request, ignored); });
        EXPECT_TRUE(result.starts_with("422 Authorization: not in the form")) << header << '\n' << result;
    }
    EXPECT_EQ(verdict([&] { check.authorization({}, ignored); }), "420 Consumer key missing or invalid");
}

TEST_F(RequestCheckTest, JudgesHostHeadersAndDefaultParameters) {
    const std::string query = "/vb/status?language=en&os=mac&partnersId=7&region=GB&version=7100";
    const Header type{"Content-Type", "application/json"};
    const Header accept{"Accept", "application/json"};
    const Header host{"Host", "localhost:1"};
    struct Row {
        std::string target;
        std::vector<Header> headers;
        bool accepted;
    };
    const Row rows[] = {
        {query, {host, type, accept}, true},
        {query + "&z=1", {host, type, accept}, false},
        {"/vb/status?clickid=a%20b&" + query.substr(11), {host, type, accept}, true},
        {query, {type, accept}, false},
        {query, {host, host, type, accept}, false},
        {query, {{"Host", "127.0.0.1:1"}, type, accept}, false},
        {query, {host, accept}, false},
        {query, {host, type, {"Accept", "*/*"}}, false},
        {query, {host, {"Content-Type", "application/json; charset=utf-8"}, accept}, false},
        {"/vb/status", {host, type, accept}, false},
        {"/vb/status?language=en&os=linux&partnersId=7&region=GB&version=7100", {host, type, accept}, false},
        {"/vb/status?language=en&os=mac&partnersId=8&region=GB&version=7100", {host, type, accept}, false},
        {"/vb/status?language=EN&os=mac&partnersId=7&region=GB&version=7100", {host, type, accept}, false},
        {"/vb/status?language=en&os=mac&partnersId=7&region=gb&version=7100", {host, type, accept}, false},
        {"/vb/status?language=en&os=mac&partnersId=7&region=GB&version=", {host, type, accept}, false},
    };
    for (const Row& row : rows) {
        Request request;
        request.target = row.target;
        request.headers = row.headers;
        const std::string result = verdict([&] {
            check.host(request);
            check.parameters(request, Encoding::query).requireNoMore();
        });
        EXPECT_EQ(result == "accepted", row.accepted) << row.target << '\n' << result;
    }
}

TEST(WireParametersTest, OnlyTheCanonicalFormsPass) {
    struct Row {
        const char* text;
        bool strictlyAccepted;
    };
    const Row queries[] = {
        {"", true},
        {"a=", true},
        {"a=1&b=2", true},
        {"a=%C3%BC", true},
        {"u=https%3A//h/p?x%3D1", true},
        {"b=2&a=1", false},
        {"a=1&a=1", false},
        {"a=%c3%bc", false},
        {"a=x+y", false},
        {"a=%61", false},
        {"a=1&", false},
        {"a", false},
        {"a=%2F", false},
        {"a=%2", false},
        {"&a=1", false},
    };
    for (const auto& [text, accepted] : queries) {
        EXPECT_EQ(verdict([text = text] { readUrlEncoded(text, true); }) == "accepted", accepted) << text;
    }
    EXPECT_EQ(readUrlEncoded("b=x%20y&a=%61", false).take("b"), "x y");

    const Row bodies[] = {
        {R"({})", true},
        {R"({"a":"p\/q\"r\\","b":"\b\f\n\r\t\u001f"})", true},
        {"{\"a\":\"\u00fc\u2028\x7f\"}", true},
        {R"({"b":"","a":""})", false},
        {R"({"a":"","a":""})", false},
        {R"({"a": ""})", false},
        {R"({"a":"/"})", false},
        {R"({"a":"\u001F"})", false},
        {R"({"a":"\u00fc"})", false},
        {R"({"a":1})", false},
        {R"([])", false},
        {R"(null)", false},
        {R"()", false},
        {"{\"a\":\"\xff\"}", false},
    };
    for (const auto& [text, accepted] : bodies) {
        EXPECT_EQ(verdict([text = text] { readJsonObject(text, true); }) == "accepted", accepted) << text;
    }
    EXPECT_EQ(readJsonObject(R"({ "b": "/", "a": "" })", false).take("b"), "/");
}

}  // namespace
}  // namespace TarnwickService
