#include "BackendFixture.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>

namespace Tarnwick_API {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;
using SharedRequest = std::shared_ptr<const Platform::HttpRequest>;

class RepeatedRequest : public Testing::BackendFixture {
protected:
    SharedRequest requestOf(const std::function<void()>& call) {
        call();
        auto request = std::move(session->requests.back());
        session->requests.clear();
        queue->runAll();
        return request;
    }

    const std::function<void()> status = [this] { backend->getStatus({}); };
};

TEST_F(RepeatedRequest, IsMadeAnewForWhateverHasChanged) {
    const auto server = [this](std::int64_t id) { return [this, id] { backend->getServer(id, {}); }; };
    std::function<void()> call = status;
    const struct {
        std::string shown;
        std::function<void()> change;
    } rows[] = {
        {"consumer_key=\\\"other\\\"", [this] { backend->setConsumerKey("other"); }},
        {"secret2%26", [this] { backend->setConsumerSecret("secret2"); }},
        {"%26s",
         [this] {
             backend->setOauthToken(OAuthToken{"t", "s"});
         }},
        {"token=\\\"t2\\\"",
         [this] {
             backend->setOauthToken(OAuthToken{"t2", "s"});
         }},
        {"secret2%26\\\"\"", [this] { backend->setOauthToken(std::nullopt); }},
        {"https://" + backend->fallbackIp(), [this] { backend->setUseFallbackIp(true); }},
        {"Host: dev.example.test", [this] { backend->setEnvironment(ApiEnvironment::dev); }},
        {"https://x.example/",
         [this] {
             backend->setApiUrl(ApiUrl{"x.example", "", "", ""}), backend->setEnvironment(ApiEnvironment::live),
                 backend->setUseFallbackIp(false);
         }},
        {"partnersId=8", [this] { backend->setPartnersId(8); }},
        {"language=de", [] { Platform::Locale::setIdentifierLookup([] { return std::string{"de_GB"}; }); }},
        {"region=AT", [] { Platform::Locale::setIdentifierLookup([] { return std::string{"de_AT"}; }); }},
        {"version=1",
         [] {
             Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleVersion", std::string{"1"}}}});
         }},
        {"clickid=c", [] { Platform::Preferences::setLookup([](auto) { return std::optional<std::string>{"c"}; }); }},
        {"/me?", [&] { call = [this] { backend->currentUser({}); }; }},
        {"/servers/1?", [&] { call = server(1); }},
        {"/servers/2?", [&] { call = server(2); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.shown);
        const auto before = requestOf(call);
        EXPECT_EQ(requestOf(call), before) << "nothing has changed";
        row.change();
        const auto after = requestOf(call);
        EXPECT_THAT(before->curlRendering({}), Not(HasSubstr(row.shown)));
        EXPECT_THAT(after->curlRendering({}), HasSubstr(row.shown));
    }
}

TEST_F(RepeatedRequest, IsKeptNeitherWithABodyNorForOtherCredentials) {
    const auto change = [this] { backend->updateUser(UserField::email, "a@example.test", {}); };
    const auto changed = requestOf(change);
    EXPECT_NE(requestOf(change), changed);
    const std::weak_ptr kept = requestOf(status);
    EXPECT_FALSE(kept.expired());
    backend->setOauthToken(std::nullopt);
    EXPECT_TRUE(kept.expired());
}

TEST_F(RepeatedRequest, BringsTheStatusThatItsOwnAnswerTells) {
    const auto telling = [](const std::string& ip) {
        return R"({"realip":")" + ip + R"(","required_client_versions":{"mac_7":"7"}})";
    };
    const std::string great(20000, '1');
    const struct {
        std::string text;
        std::optional<std::string> ip;
    } rows[] = {{telling("1"), "1"}, {telling("1"), "1"}, {telling("2"), "2"},     {"{}", std::nullopt},
                {telling("2"), "2"}, {telling("3"), "3"}, {telling(great), great}, {telling("3"), "3"}};
    for (const auto& row : rows) {
        session->script({Testing::ScriptedHttpSession::answer(200, row.text)});
        Testing::Received<Status> received;
        backend->getStatus(received.completion());
        queue->runAll();
        EXPECT_EQ(received.result ? std::optional{received.result->ip} : std::nullopt, row.ip);
    }
}

}  // namespace
}  // namespace Tarnwick_API
