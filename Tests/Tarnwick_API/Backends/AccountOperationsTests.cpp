#include <Tarnwick_API/Backends/ApiVersion1.hpp>

#include "BackendFixture.hpp"

#include <string>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Platform::HttpHeaders;
using Platform::HttpMethod;
using Testing::Received;
using Testing::ScriptedHttpSession;

constexpr const char* anonymousHeader =
    R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="ck", oauth_signature="cs%26")";
constexpr const char* signedInHeader =
    R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key="ck",oauth_token="tk" ,oauth_signature="cs%26ts")";
constexpr const char* defaultQuery = "language=en&os=mac&partnersId=7&region=GB&version=7100";
constexpr const char* tokenBody = R"({"oauth_token":"tk","oauth_token_secret":"ts"})";

class AccountOperations : public Testing::BackendFixture {
protected:
    void signIn() { backend->setOauthToken(OAuthToken{"tk", "ts"}); }

    [[nodiscard]] const Platform::HttpRequest& sent() const { return *session->requests.back(); }

    static HttpHeaders standardHeaders(const char* authorization) {
        return {{"Accept", "application/json"},
                {"Authorization", authorization},
                {"Content-Type", "application/json"},
                {"Host", "live.example.test"}};
    }

    void expectKept(const char* account, const char* password) {
        const auto kept = Keychain::getLoginData("tests");
        ASSERT_TRUE(kept);
        EXPECT_EQ(kept->username, account);
        EXPECT_EQ(kept->password, password);
    }
};

TEST_F(AccountOperations, LoginSendsCredentialsAsJsonAndKeepsTheToken) {
    session->script({ScriptedHttpSession::answer(200, tokenBody)});
    Received<void> received;
    backend->login("bob@example.test", "p/q\"r\\", false, received.completion());
    queue->runAll();
    EXPECT_EQ(sent().method(), HttpMethod::post);
    EXPECT_EQ(sent().url().absoluteString(), "https://live.example.test/vb/oauth/access_token");
    EXPECT_EQ(sent().headers(), standardHeaders(anonymousHeader));
    EXPECT_EQ(sent().body(),
              R"({"language":"en","os":"mac","partnersId":"7","region":"GB","version":"7100",)"
              R"("x_auth_machineid":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","x_auth_machinename":"desk-1",)"
              R"("x_auth_mode":"client_auth","x_auth_password":"p\/q\"r\\","x_auth_username":"bob@example.test"})");
    EXPECT_EQ(received.times, 1);
    EXPECT_FALSE(received.error);
    EXPECT_EQ(backend->username(), "tk");
    expectKept("tk", "ts");
}

TEST_F(AccountOperations, LoginAsksForTheImportAndNamesAnUnnamedMachine) {
    Platform::HostName::setLookup([] { return std::nullopt; });
    Platform::Preferences::setLookup([](std::string_view) { return "click"; });
    session->script({ScriptedHttpSession::answer(200, tokenBody)});
    backend->login("u", "p", true, {});
    EXPECT_EQ(
        sent().body(),
        R"({"clickid":"click","import":"1","language":"en","os":"mac","partnersId":"7","region":"GB","version":"7100",)"
        R"("x_auth_machineid":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","x_auth_machinename":"Mac Desktop",)"
        R"("x_auth_mode":"client_auth","x_auth_password":"p","x_auth_username":"u"})");
    queue->runAll();
}

TEST_F(AccountOperations, LoginTellsWhyItFailed) {
    struct Row {
        std::int64_t status = 0;
        const char* body = "";
        ApiError error;
    };
    const Row rows[] = {
        {202, tokenBody, LoginError{LoginError::qvUserMigrationRequired}},
        {200, R"({"oauth_token":"tk"})", LoginError{LoginError::noOauthToken}},
        {200, "not JSON", LoginError{LoginError::noOauthToken}},
        {420, "Not logged in: wrong name", LoginError{LoginError::loginRequired}},
        {420, "INVALID CONSUMER ACCESS RIGHTS", LoginError{LoginError::invalidConsumerRights}},
        {420, "INVALID CONSUMER KEY", LoginError{LoginError::invalidConsumerKey}},
        {420, "CONSUMER KEY MISSING OR INVALID", LoginError{LoginError::consumerKeyMissing}},
        {420, "Enhance your calm", ResponseError::genericError("Enhance your calm")},
        {401, "INVALID CONSUMER KEY", ResponseError::unauthorized()},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.body);
        session->script({ScriptedHttpSession::answer(row.status, row.body)});
        Received<void> received;
        backend->login("u", "p", false, received.completion());
        queue->runAll();
        EXPECT_EQ(received.times, 1);
        EXPECT_EQ(received.error, row.error);
        EXPECT_FALSE(backend->oauthToken());
        EXPECT_FALSE(Keychain::hasLoginData("tests"));
    }
}

TEST_F(AccountOperations, LoginWithoutAnAnswerKeepsAndStoresAnEarlierToken) {
    signIn();
    session->script({ScriptedHttpSession::answer(200, "{}")});
    Received<void> received;
    backend->login("u", "p", false, received.completion());
    queue->runAll();
    EXPECT_EQ(received.error, ApiError{LoginError{LoginError::noOauthToken}});
    EXPECT_EQ(backend->username(), "tk");
    expectKept("tk", "ts");
}

TEST_F(AccountOperations, LogoutSendsTheTokenAloneAndLeavesAPlaceholder) {
    signIn();
    session->script({ScriptedHttpSession::answer(204, "")});
    Received<void> received;
    ::testing::internal::CaptureStdout();
    backend->logout(received.completion());
    queue->runAll();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "logout v1\n");
    EXPECT_EQ(sent().method(), HttpMethod::delete_);
    EXPECT_EQ(sent().url().absoluteString(), "https://live.example.test/vb/users/me/access_tokens/tk");
    EXPECT_EQ(sent().headers(), (HttpHeaders{{"Authorization", signedInHeader}, {"Host", "live.example.test"}}));
    EXPECT_FALSE(sent().body());
    EXPECT_FALSE(received.error);
    EXPECT_FALSE(backend->oauthToken());
    expectKept("wipe", "wipe");

    Received<void> again;
    backend->logout(again.completion());
    EXPECT_EQ(again.times, 1);
    ASSERT_TRUE(again.error && again.error->as<Platform::DecodingError>());
    const auto& error = *again.error->as<Platform::DecodingError>();
    EXPECT_EQ(error.kind(), Platform::DecodingError::Kind::dataCorrupted);
    EXPECT_TRUE(error.codingPath().empty());
    EXPECT_EQ(error.debugDescription(), "Not logged in Error.");
    EXPECT_EQ(session->requests.size(), 1U);
}

TEST_F(AccountOperations, LogoutThatFailsKeepsTheToken) {
    signIn();
    session->script({ScriptedHttpSession::answer(500, "later")});
    Received<void> received;
    backend->logout(received.completion());
    queue->runAll();
    EXPECT_EQ(received.error, ApiError{ResponseError::genericError("later")});
    EXPECT_EQ(backend->username(), "tk");
    EXPECT_FALSE(Keychain::hasLoginData("tests"));
}

TEST_F(AccountOperations, CreateUserSendsTheAccountAndRecognisesATakenName) {
    Platform::HostName::setLookup([] { return std::nullopt; });
    session->script({ScriptedHttpSession::answer(201, ""), ScriptedHttpSession::answer(409, "taken"),
                     ScriptedHttpSession::answer(400, "")});
    Received<void> created;
    Received<void> taken;
    Received<void> refused;
    backend->createUser("e@x", "pw", created.completion());
    EXPECT_EQ(sent().method(), HttpMethod::post);
    EXPECT_EQ(sent().headers(), standardHeaders(anonymousHeader));
    EXPECT_EQ(
        sent().body(),
        R"({"hid":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","language":"en","os":"mac","partnersId":"7","password":"pw",)"
        R"("region":"GB","source":"mac","useremail":"e@x","username":"e@x","version":"7100",)"
        R"("x_auth_machineid":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427",)"
        R"("x_auth_machinename":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427"})");
    backend->createUser("e@x", "pw", taken.completion());
    backend->createUser("e@x", "pw", refused.completion());
    queue->runAll();
    EXPECT_TRUE(created.times == 1 && !created.error);
    EXPECT_EQ(taken.error, ApiError{SignupError{SignupError::usernameAlreadyExists}});
    EXPECT_EQ(refused.error, ApiError{ResponseError::badRequest()});
    EXPECT_FALSE(backend->oauthToken());
}

TEST_F(AccountOperations, SetTokenKeepsTheTokenOnlyWhenTheUserIsRead) {
    session->script({ScriptedHttpSession::answer(200, R"({"id":3,"user_name":"bob","active":1})"),
                     ScriptedHttpSession::answer(401, ""), ScriptedHttpSession::answer(200, "[]")});
    Received<User> good;
    backend->setToken("tk", "ts", good.completion());
    EXPECT_EQ(sent().url().absoluteString(),
              std::string{"https://live.example.test/vb/users/me?flags=17&"} + defaultQuery);
    EXPECT_EQ(sent().headers(), standardHeaders(signedInHeader));
    queue->runAll();
    ASSERT_TRUE(good.result);
    EXPECT_EQ(good.result->username, "bob");
    EXPECT_EQ(backend->username(), "tk");
    EXPECT_FALSE(Keychain::hasLoginData("tests"));

    Received<User> refused;
    backend->setToken("bad", "ts", refused.completion());
    queue->runAll();
    EXPECT_EQ(refused.error, ApiError{ResponseError::unauthorized()});
    EXPECT_FALSE(backend->oauthToken());

    Received<User> undecodable;
    backend->setToken("tk", "ts", undecodable.completion());
    queue->runAll();
    EXPECT_TRUE(undecodable.times == 1 && !undecodable.result && !undecodable.error);
    EXPECT_EQ(backend->username(), "tk");
}

TEST_F(AccountOperations, UpdateUserSendsTheNewValueAlone) {
    signIn();
    session->script({ScriptedHttpSession::answer(200, "{}"), ScriptedHttpSession::answer(403, "")});
    Received<void> changed;
    Received<void> refused;
    backend->updateUser(UserField::password, "new", changed.completion());
    EXPECT_EQ(sent().method(), HttpMethod::put);
    EXPECT_EQ(sent().headers(), standardHeaders(signedInHeader));
    EXPECT_EQ(sent().body(),
              R"({"language":"en","new_password":"new","os":"mac","partnersId":"7","region":"GB","version":"7100"})");
    backend->updateUser(UserField::email, "e", refused.completion());
    queue->runAll();
    EXPECT_TRUE(changed.times == 1 && !changed.error);
    EXPECT_EQ(refused.error, ApiError{ResponseError::forbidden()});
}

TEST_F(AccountOperations, AuthTokenIsThePlainBody) {
    struct Row {
        std::int64_t status = 0;
        std::optional<std::string> body;
        int times = 0;
        std::optional<std::string> token;
        std::optional<ApiError> error;
    };
    const Row rows[] = {
        {200, "a\xC3\xBC", 1, "a\xC3\xBC", {}},          {204, "", 1, "", {}},  {200, "\xFF", 1, {}, {}},
        {401, "", 1, {}, ResponseError::unauthorized()}, {202, "t", 0, {}, {}},
    };
    signIn();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.status);
        session->script({ScriptedHttpSession::answer(row.status, row.body)});
        Received<std::string> received;
        backend->getAuthToken(received.completion());
        queue->runAll();
        EXPECT_EQ(received.times, row.times);
        EXPECT_EQ(received.result, row.token);
        EXPECT_EQ(received.error, row.error);
    }
    EXPECT_EQ(sent().headers(), (HttpHeaders{{"Authorization", signedInHeader}, {"Host", "live.example.test"}}));
    EXPECT_EQ(sent().url().absoluteString(),
              std::string{"https://live.example.test/vb/users/me/authtoken?"} + defaultQuery);
}

TEST_F(AccountOperations, StatusIsDecodedAndFallbackModeLeadsToTheAddress) {
    session->script(
        {ScriptedHttpSession::answer(200, R"({"realip":"192.0.2.9","required_client_versions":{"mac_7":"7.1.2"}})"),
         ScriptedHttpSession::answer(200, "{}")});
    backend->setUseFallbackIp(true);
    backend->setEnvironment(ApiEnvironment::beta);
    Received<Status> received;
    backend->getStatus(received.completion());
    EXPECT_EQ(sent().url().absoluteString(), "https://" + backend->fallbackIp() + "/vb/status?" + defaultQuery);
    EXPECT_EQ(sent().headers().at("Host"), "beta.example.test");
    queue->runAll();
    ASSERT_TRUE(received.result);
    EXPECT_EQ(received.result->ip, "192.0.2.9");

    Received<Status> undecodable;
    backend->getStatus(undecodable.completion());
    queue->runAll();
    EXPECT_TRUE(undecodable.times == 1 && !undecodable.result && !undecodable.error);
}

TEST_F(AccountOperations, WorkWithoutACompletion) {
    signIn();
    session->script({ScriptedHttpSession::answer(200, "{}")});
    backend->getStatus({});
    backend->getAuthToken({});
    backend->updateUser(UserField::email, "e", {});
    backend->createUser("u", "p", {});
    backend->setToken("t", "s", {});
    backend->logout({});
    queue->runAll();
    EXPECT_EQ(session->requests.size(), 6U);
}

}  // namespace
}  // namespace Tarnwick_API
