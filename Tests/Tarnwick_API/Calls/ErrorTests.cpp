#include <Tarnwick_API/Calls/ApiError.hpp>
#include <Tarnwick_API/Calls/HttpStatus.hpp>
#include <Tarnwick_API/Facade/ApiNotification.hpp>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

TEST(ResponseErrors, AreToldByFixedSentences) {
    const std::pair<ResponseError, const char*> rows[] = {
        {ResponseError::genericError("the service's words"), "Generic error"},
        {ResponseError::unknownError(), "Unknown error"},
        {ResponseError::badRequest(), "Request error."},
        {ResponseError::unauthorized(), "The user is not authorized."},
        {ResponseError::forbidden(), "Forbidden."},
        {ResponseError::notFound(), "Not found."},
        {ResponseError::notReachable(), "API not reachable."},
    };
    for (const auto& [error, text] : rows) {
        EXPECT_EQ(error.localizedDescription(), text);
        EXPECT_EQ(ApiError{error}.localizedDescription(), text);
    }
    EXPECT_EQ(ResponseError::genericError("a"), ResponseError::genericError("a"));
    EXPECT_NE(ResponseError::genericError("a"), ResponseError::genericError("b"));
}

TEST(LoginErrors, AreRecognisedByTheBeginningOfTheText) {
    const std::pair<const char*, std::optional<LoginError::Value>> rows[] = {
        {"NOT LOGGED IN", LoginError::loginRequired},
        {"not Logged in, sorry", LoginError::loginRequired},
        {"INVALID CONSUMER ACCESS RIGHTS", LoginError::invalidConsumerRights},
        {"invalid consumer key", LoginError::invalidConsumerKey},
        {"Consumer key missing or invalid.", LoginError::consumerKeyMissing},
        {"\u0131nvalid con\u017Fumer key", LoginError::invalidConsumerKey},
        {" NOT LOGGED IN", std::nullopt},
        {"NOT LOGGED I", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, expected] : rows) {
        const auto error = LoginError::from(text);
        ASSERT_EQ(error.has_value(), expected.has_value()) << text;
        if (error) {
            EXPECT_EQ(*error, *expected) << text;
        }
    }
    EXPECT_EQ(LoginError{LoginError::invalidConsumerRights}.responseText(), "INVALID CONSUMER ACCESS RIGHTS");
    EXPECT_EQ(LoginError{LoginError::noOauthToken}.responseText(), "");
    EXPECT_EQ(LoginError{LoginError::qvUserMigrationRequired}.responseText(), "");
    EXPECT_EQ(fromRawValue<LoginResponseType>("INVALID CONSUMER KEY"), LoginResponseType::invalidConsumerKey);
    EXPECT_EQ(fromRawValue<LoginResponseType>("invalid consumer key"), std::nullopt);
    EXPECT_EQ(rawValue(LoginResponseType::consumerKeyMissing), "CONSUMER KEY MISSING OR INVALID");
}

TEST(ApiErrors, ShowTheirTypeAndASentence) {
    const ApiError error = SignupError{SignupError::usernameAlreadyExists};
    ASSERT_NE(error.as<SignupError>(), nullptr);
    EXPECT_EQ(error.as<LoginError>(), nullptr);
    EXPECT_FALSE(error.localizedDescription().empty());
    EXPECT_NE(error, ApiError{LoginError{LoginError::noOauthToken}});
}

TEST(HttpStatuses, HaveNamesForSomeCodesOnly) {
    EXPECT_EQ(fromRawValue<HttpStatus>(429), HttpStatus::tooManyRequests);
    EXPECT_EQ(fromRawValue<HttpStatus>(304), HttpStatus::notModified);
    EXPECT_EQ(fromRawValue<HttpStatus>(418), std::nullopt);
    EXPECT_EQ(fromRawValue<HttpStatus>(65736), std::nullopt);
}

TEST(ApiNotifications, AreMadeFromTheirExactText) {
    EXPECT_EQ(fromRawValue<ApiNotification>("DidLogin"), ApiNotification{ApiNotification::DidLogin});
    EXPECT_EQ(fromRawValue<ApiNotification>("DidLogout")->name(), "DidLogout");
    EXPECT_EQ(fromRawValue<ApiNotification>("didlogout"), std::nullopt);
}

}  // namespace
}  // namespace Tarnwick_API
