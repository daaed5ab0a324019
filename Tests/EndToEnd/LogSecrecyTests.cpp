#include "ServiceFixture.hpp"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Platform::Logging;
/// A user's whole life with the service, each call of it refused, misunderstood and cut off before it succeeds, under a
/// log that is searched.
class LogSecrecy : public Testing::ServiceFixture {
protected:
    /// In which kinds of lines each secret stands, by its name.
    using Places = std::map<std::string, std::set<std::string>>;

    LogSecrecy() {
        Platform::HostName::setLookup([] { return std::string{"Quartz of Ada"}; });
        Platform::Preferences::setLookup([](auto /*key*/) { return std::string{"click-4711"}; });
        api = makeFacade();
    }

    void liveThroughEverything();
    [[nodiscard]] Places places() const;

    std::vector<std::string> lines_;
    bool repeatsSecrets_ = false;

private:
    template <typename T>
    Testing::Received<T> complete(Operation<T> operation) {
        return await<T>([&](auto done) { std::move(operation).start(std::move(done)); });
    }

    template <typename Make>
    void call(const Make& make, bool mayMisunderstand = true) {
        std::string answer{"{"};
        for (const auto& [name, texts] : secrets_) {
            std::ranges::for_each(texts, [&](const auto& text) { answer += repeatsSecrets_ ? text + ' ' : ""; });
        }
        service.faults().add({.status = 503, .body = answer});
        complete(make());
        if (mayMisunderstand) {
            service.faults().add({.body = answer});
            complete(make());
        }
        service.faults().add({.count = 2, .cut = TarnwickService::Cut::beforeAnswer});
        EXPECT_FALSE(complete(make()).error) << service.counters().lastRefusal;
        for (const auto& session : service.accounts().allSessions()) {
            secrets_["access token"].insert(session.token);
            secrets_["token secret"].insert(session.secret);
            secrets_["authentication token"].insert("at-" + session.token);
        }
    }

    std::map<std::string, std::set<std::string>> secrets_;
};

void LogSecrecy::liveThroughEverything() {
    const std::string names[] = {"adalovelace@mail.example", "graceh@mail.example", "newname@mail.example"};
    const std::string passwords[] = {"first-hush", "second/hushhush+", R"(third"hushhushhush","x)"};
    // Of each what stays the same however it is encoded: percent signs, JSON's and the shell's escapes.
    secrets_ = {{"password", {"first-hush", "hushhush", "hushhushhush", "wrong-hush"}},
                {"consumer secret", {service.configuration().consumerSecret}},
                {"pre-shared secret", {"tarnwick-demonstration"}},
                {"user", {"adalovelace", "graceh", "newname", "mail.example"}},
                {"machine", {"Quartz", api->uid().uuidString()}},
                {"position", {"52.123456", "13.654321"}},
                {"address", {service.configuration().callerAddress}},
                {"click id", {"click-4711"}},
                {"application's own", {"ownuser", "ownpath", "ownvalue", "ownquery", "ownend", "ownheader"}}};
    call([&] { return api->createUser(names[0], passwords[0]); });
    service.accounts().create({.username = names[1], .password = passwords[1], .migrationRequired = true});
    EXPECT_TRUE(signIn(names[1], passwords[1]).error);
    call([&] { return api->login(names[1], passwords[1], true); });
    const auto store = Keychain::store();
    Keychain::setStore(Platform::makeFileKeychainStore((trustedRoots / "keychain").string()));
    call([&] { return api->login(names[0], passwords[0]); });
    Keychain::setStore(store);
    EXPECT_TRUE(signIn(names[0], "wrong-hush").error);
    call([&] { return api->updateUser(UserField::password, passwords[1]); });
    call([&] { return api->updateUser(UserField::password, passwords[2]); });
    call([&] { return api->updateUser(UserField::email, names[2]); });
    call([&] { return api->updateUser(UserField::username, names[2]); });
    const auto backend = std::dynamic_pointer_cast<ApiVersion1>(api->api());
    const auto addDevice = [&](Completion<void> done) {
        backend->dispatchCall(AddDeviceCallV1{backend->apiBase()},
                              [done = std::move(done)](const auto&...) mutable { done(std::nullopt); });
    };
    call([&] { return Operation<void>{addDevice}; });
    const auto url = "https://ownuser:ownuser@" + service.apiHost() + "/vb/users/ownpath?ownquery&key=ownvalue#ownend";
    const auto sendOwn = [&](Completion<void> done) {
        backend->sendRequest(*Platform::Url::fromString(url), {{"own", "ownvalue"}}, Platform::ParameterEncoding::url,
                             {{"Own", "ownheader"}}, Platform::HttpMethod::get,
                             [done = std::move(done)](const auto&...) mutable { done(std::nullopt); });
    };
    call([&] { return Operation<void>{sendOwn}; });
    const auto kept = *backend->oauthToken();
    call([&] { return api->setToken(kept.token, kept.secret); });
    call([&] { return api->getCurrentUser(); });
    call([&] { return api->getDevices(); });
    call([&] { return api->getAuthToken(); });
    call([&] { return api->getStatus(); });
    call([&] { return api->getCountries(ServerProfile::streaming, 52.123456, 13.654321); });
    call([&] { return api->getServers("DE", 52.123456, 13.654321); });
    call([&] { return api->getCandidateServers(std::nullopt, ServerProfile::general); });
    call([&] { return api->getDefaultFavorites(); });
    call([&] { return api->getServer(service.catalogue().servers().front().id); });
    call([&] { return api->logout(); }, false);
}

LogSecrecy::Places LogSecrecy::places() const {
    Places places;
    for (const auto& [name, texts] : secrets_) {
        auto& found = places[name];
        for (std::size_t at = 0; at < lines_.size(); ++at) {
            const auto& line = lines_[at];
            const bool isAnswer = at > 0 && lines_[at - 1] == "response data:";
            const std::string kind = isAnswer                           ? "answer"
                                     : line.starts_with("$ curl")       ? "curl"
                                     : line.starts_with("= URLRequest") ? "URL"
                                                                        : line;
            if (std::ranges::any_of(texts, [&](const auto& text) { return line.find(text) != std::string::npos; })) {
                found.insert(kind);
            }
        }
    }
    return places;
}

TEST_F(LogSecrecy, IsWhatTheChoiceSays) {
    const Platform::ScopedProcessValues logging;
    const auto sink = [this](const Logging::Entry& entry) { lines_.emplace_back(entry.message); };
    Logging::setSink(sink);
    liveThroughEverything();
    const Places expected{{"password", {}},
                          {"consumer secret", {"curl"}},
                          {"access token", {"curl", "URL", "answer"}},
                          {"token secret", {"curl", "answer"}},
                          {"authentication token", {"answer"}},
                          {"pre-shared secret", {"answer"}},
                          {"user", {"curl", "answer"}},
                          {"machine", {"curl", "answer"}},
                          {"position", {"curl", "URL"}},
                          {"address", {"answer"}},
                          {"click id", {"curl", "URL"}},
                          {"application's own", {"curl", "URL"}}};
    EXPECT_EQ(places(), expected);

    lines_.clear();
    service.reset();
    repeatsSecrets_ = true;
    Logging::setSink(sink, Logging::Secrets::hidden);
    liveThroughEverything();
    for (const auto& [name, kinds] : places()) {
        EXPECT_THAT(kinds, testing::IsEmpty()) << name;
    }
    for (const auto* const shown : {"Authorization: HIDDEN", "/vb/users/me/access_tokens/HIDDEN", "statuscode: 503",
                                    R"(\"x_auth_mode\":\"client_auth\",\"x_auth_password\":\"HIDDEN\")", "flags=17"}) {
        EXPECT_THAT(lines_, testing::Contains(testing::HasSubstr(shown)));
    }
}

}  // namespace
}  // namespace Tarnwick_API
