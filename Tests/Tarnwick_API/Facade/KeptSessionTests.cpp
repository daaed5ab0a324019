#include <Tarnwick_API/Facade/TarnwickApi.hpp>
#include <Tarnwick_API/Platform/Application/NotificationCenter.hpp>

#include "BackendFixture.hpp"

#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Platform::KeychainStatus;
using Testing::Received;
using Testing::ScriptedHttpSession;

constexpr const char* userBody = R"({"id":7,"user_name":"bob","active":1})";

/// A keychain that answers every call with one status.
class RefusingStore final : public Platform::KeychainStore {
public:
    explicit RefusingStore(KeychainStatus status) : status_{status} {}
    [[nodiscard]] Platform::KeychainAnswer copyMatching(const Platform::KeychainQuery& /*query*/,
                                                        const Platform::KeychainReturn& /*wanted*/) override {
        return {status_, {}};
    }
    [[nodiscard]] KeychainStatus update(const Platform::KeychainQuery& /*target*/,
                                        const Platform::KeychainChanges& /*changes*/) override {
        return status_;
    }
    [[nodiscard]] KeychainStatus add(const Platform::KeychainItem& /*item*/) override { return status_; }
    [[nodiscard]] KeychainStatus remove(const Platform::KeychainQuery& /*target*/) override { return status_; }

private:
    KeychainStatus status_;
};

class KeptSession : public Testing::BackendFixture {
protected:
    KeptSession() { facade->setApi(backend); }

    void login() {
        session->script({ScriptedHttpSession::answer(200, R"({"oauth_token":"tk","oauth_token_secret":"ts"})"),
                         ScriptedHttpSession::answer(200, userBody)});
        facade->login("bob", "pw", false, {});
        queue->runAll();
    }

    std::shared_ptr<TarnwickApi> facade =
        TarnwickApi::create({.uuid = Testing::installation, .apiUrl = {.live = "live.example.test"}});
    int logouts = 0;
    Platform::NotificationCenter::Observation observation =
        Platform::NotificationCenter::defaultCenter().addObserver("DidLogout", [this](const auto&) { ++logouts; });
};

TEST_F(KeptSession, IsRestoredOrSaysWhyNot) {
    const auto signedOut = LoginData::signedOutPlaceholder();
    const struct {
        const char* name;
        std::optional<LoginData> kept;
        std::shared_ptr<Platform::KeychainStore> store;
        std::optional<SessionError> why;
    } rows[] = {
        {"nothing", std::nullopt, keychain, SessionError::nobodySignedIn},
        {"placeholder", signedOut, keychain, SessionError::nobodySignedIn},
        {"locked", std::nullopt, std::make_shared<RefusingStore>(KeychainStatus::interactionNotAllowed),
         SessionError::keychainLocked},
        {"damaged", std::nullopt, std::make_shared<RefusingStore>(KeychainStatus::invalidKeychain),
         SessionError::keychainUnavailable},
        {"token", LoginData{"tk", "ts"}, keychain, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Keychain::setStore(row.store);
        if (row.kept) {
            Keychain::setPassword("tests", row.kept->username, row.kept->password);
        }
        session->script({ScriptedHttpSession::answer(200, userBody)});
        Received<User> received;
        facade->restoreSession(received.completion());
        EXPECT_EQ(received.times, 0) << "not inside the call";
        queue->runAll();
        EXPECT_EQ(received.times, 1);
        EXPECT_EQ(received.error, row.why ? std::optional{ApiError{*row.why}} : std::nullopt);
        EXPECT_EQ(facade->currentUser().has_value(), !row.why);
        EXPECT_EQ(facade->username(), row.why ? "" : "tk");
    }
    EXPECT_EQ(logouts, 0);
}

TEST_F(KeptSession, IsKeptWithoutANetwork) {
    Keychain::setPassword("tests", "tk", "ts");
    session->script({ScriptedHttpSession::failure()});
    Received<User> received;
    facade->restoreSession(received.completion());
    queue->runAll();
    EXPECT_EQ(received.error, ApiError{ResponseError::notReachable()});
    EXPECT_EQ(facade->username(), "tk");
    EXPECT_EQ(logouts, 0);
}

TEST_F(KeptSession, SaysWhatBecameOfTheToken) {
    EXPECT_EQ(facade->tokenKeeping(), std::nullopt);
    login();
    EXPECT_EQ(facade->tokenKeeping(), KeychainStatus::success);
    Keychain::setStore(std::make_shared<RefusingStore>(KeychainStatus::interactionNotAllowed));
    login();
    EXPECT_EQ(facade->tokenKeeping(), KeychainStatus::interactionNotAllowed);
    EXPECT_EQ(facade->forgetSession(), KeychainStatus::interactionNotAllowed);
    EXPECT_FALSE(facade->currentUser());
    EXPECT_EQ(facade->username(), "");
    EXPECT_EQ(logouts, 1);
    Keychain::setStore(keychain);
    EXPECT_EQ(facade->forgetSession(), KeychainStatus::success);
    EXPECT_FALSE(Keychain::hasLoginData("tests"));
    EXPECT_TRUE(session->requests.size() == 4) << "the service is not asked";
}

}  // namespace
}  // namespace Tarnwick_API
