// How an application is tested without a service, a network or a clock: its own code, on a fake backend.

#include <Tarnwick_API/Tarnwick_API.hpp>
#include <Tarnwick_API/Testing/ApiFixture.hpp>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

using namespace Tarnwick_API;
using namespace std::chrono_literals;

namespace {

/// A part of the application: what its window for signing in shows.
class SignInWindow {
public:
    explicit SignInWindow(std::shared_ptr<TarnwickApi> api) : api_{std::move(api)} {}

    void submit(const std::string& name, const std::string& password) {
        text = "One moment";
        api_->login(name, password).within(20s).start([this](const auto& user, const auto& error) {
            text = user ? "Hello " + user->username : error ? error->localizedDescription() : "Please try again";
        });
    }

    std::string text;

private:
    std::shared_ptr<TarnwickApi> api_;
};

TEST(SignInWindow, GreetsTheUser) {
    const Testing::ApiFixture fixture;
    User ada;
    ada.username = "ada";
    fixture.backend->currentUser.answer(ada);
    SignInWindow window{fixture.api};
    window.submit("ada", "secret");
    EXPECT_EQ(window.text, "One moment");
    fixture.queue->runReady();
    EXPECT_EQ(window.text, "Hello ada");
    EXPECT_EQ(fixture.backend->login.calls().at(0).password, "secret");
}

TEST(SignInWindow, TellsWhatWentWrong) {
    const Testing::ApiFixture fixture;
    SignInWindow window{fixture.api};
    fixture.backend->login.fail(ResponseError::notReachable());
    window.submit("ada", "secret");
    fixture.queue->runReady();
    EXPECT_EQ(window.text, ResponseError::notReachable().localizedDescription());

    fixture.backend->login.answer();
    fixture.backend->currentUser.answerNothing();
    window.submit("ada", "secret");
    fixture.queue->runReady();
    EXPECT_EQ(window.text, "Please try again");
}

TEST(SignInWindow, GivesUpAfterTwentySeconds) {
    const Testing::ApiFixture fixture;
    SignInWindow window{fixture.api};
    fixture.backend->login.hold();
    window.submit("ada", "secret");
    fixture.queue->advance(19s);
    EXPECT_EQ(window.text, "One moment");
    fixture.queue->advance(1s);
    EXPECT_NE(window.text, "One moment");
    EXPECT_TRUE(fixture.backend->login.calls().at(0).stop.isStopped());
}

TEST(SignInWindow, SendsTheNameInTheRequest) {
    const Testing::ApiFixture fixture;
    fixture.api->setVersion(ApiVersion::v1);
    fixture.session->script({Testing::ScriptedHttpSession::failure(), Testing::ScriptedHttpSession::answer(401, "")});
    SignInWindow window{fixture.api};
    window.submit("ada", "secret");
    fixture.queue->runAll();
    EXPECT_EQ(window.text, ResponseError::unauthorized().localizedDescription());
    ASSERT_EQ(fixture.session->requests.size(), 2U) << "a failed transfer is tried again";
    EXPECT_NE(fixture.session->requests.at(1)->body().value_or("").find("\"ada\""), std::string::npos);
}

}  // namespace
