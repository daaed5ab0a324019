#include "Api/RequestCheck.hpp"

#include <gmock/gmock.h>

namespace TarnwickService {
namespace {

/// Status and text of the refusal; "accepted" without one.
std::string verdict(const RequestCheck& check, const std::string& authorization, SessionRule rule) {
    Request request;
    request.headers = {{"authorization", authorization}};
    try {
        check.authorization(request, rule);
    } catch (const Refusal& refusal) {
        return std::to_string(refusal.status()) + ' ' + refusal.what();
    }
    return "accepted";
}

TEST(RequestCheckTest, JudgesTheAuthorizationHeaderByTheByte) {
    Accounts accounts;
    const Session session = accounts.openSession(1, {});
    Configuration configuration;
    configuration.consumerKey = "ck";
    configuration.consumerSecret = R"(c&"s)";
    const RequestCheck check{configuration, "localhost:1", accounts};

    const std::string start = R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key=")";
    const std::string alive =
        start + R"(ck",oauth_token=")" + session.token + R"(" ,oauth_signature="c&"s%26)" + session.secret + '"';
    const std::string dead = start + R"(ck",oauth_token="gone" ,oauth_signature="c&"s%26gone")";
    const std::string none = start + R"(ck", oauth_signature="c&"s%26")";
    constexpr auto required = SessionRule::required;
    constexpr auto ifGiven = SessionRule::ifGiven;
    constexpr auto ignored = SessionRule::ignored;
    const char* const notInForm = "422 Authorization: not in the form";
    struct Row {
        std::string header;
        SessionRule rule;
        std::string verdict;
    };
    const Row rows[] = {
        {alive, required, "accepted"},
        {none, ifGiven, "accepted"},
        {dead, ignored, "accepted"},
        {none, required, "420 Not logged in"},
        {dead, required, "420 Not logged in"},
        {dead, ifGiven, "420 Not logged in"},
        {start + R"(ckk", oauth_signature="c&"s%26")", ignored, "420 Invalid consumer key"},
        {start + R"(ck", oauth_signature="wrong%26")", ignored, "401 Invalid signature"},
        {start + R"(ck", oauth_signature="c&"s%26more")", ignored, "401 Invalid signature"},
        {alive.substr(0, alive.size() - 2) + '"', required, "401 Invalid signature"},
        // The separators around the signature differ with and without a token; neither may be the other's.
        {start + R"(ck" ,oauth_signature="c&"s%26")", ignored, notInForm},
        {start + R"(ck", oauth_token="t" ,oauth_signature="c&"s%26t")", ignored, notInForm},
        {start + R"(ck",oauth_token="t", oauth_signature="c&"s%26t")", ignored, notInForm},
        {start + R"(ck",oauth_token="" ,oauth_signature="c&"s%26")", ignored, notInForm},
        {' ' + none, ignored, notInForm},
        {none + ' ', ignored, notInForm},
    };
    for (const Row& row : rows) {
        EXPECT_THAT(verdict(check, row.header, row.rule), testing::StartsWith(row.verdict)) << row.header;
    }
}

}  // namespace
}  // namespace TarnwickService
