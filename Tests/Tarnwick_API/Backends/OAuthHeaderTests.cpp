#include "OAuthHeader.hpp"

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

TEST(OAuthHeader, IsExactToTheCharacter) {
    struct Row {
        const char* consumerKey = "";
        const char* consumerSecret = "";
        std::optional<OAuthToken> token;
        const char* expected = "";
    };
    const Row rows[] = {
        {"ck", "cs", OAuthToken{"tk", "ts"},
         R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="ck",oauth_token="tk" ,oauth_signature="cs%26ts")"},
        {"ck", "cs", std::nullopt,
         R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="ck", oauth_signature="cs%26")"},
        {"ck", "cs", OAuthToken{"tk", ""},
         R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="ck", oauth_signature="cs%26")"},
        {"ck", "cs", OAuthToken{"", "ts"},
         R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="ck", oauth_signature="cs%26")"},
        {"", "", OAuthToken{"tk", "ts"},
         R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="",oauth_token="tk" ,oauth_signature="%26ts")"},
        {"k\"&", "s&\"%", std::nullopt,
         R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="k"&", oauth_signature="s&"%%26")"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(oauthHeader(row.consumerKey, row.consumerSecret, row.token), row.expected);
    }
}

}  // namespace
}  // namespace Tarnwick_API
