#include <Tarnwick_API/Calls/AccountCalls.hpp>
#include <Tarnwick_API/Calls/CatalogueCalls.hpp>
#include <Tarnwick_API/Calls/DeviceCalls.hpp>
#include <Tarnwick_API/Calls/StatusCallV1.hpp>
#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Application/Preferences.hpp>
#include <Tarnwick_API/Platform/Application/ScopedProcessValues.hpp>

#include <map>
#include <string>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using Platform::HttpMethod;
using Platform::ParameterEncoding;
using Platform::Parameters;

constexpr auto live = ApiEnvironment::live;
const std::string base = "https://h.example/vb";

class Calls : public ::testing::Test {
protected:
    Calls() { install("en_GB", "7100", std::nullopt); }

    static void install(const std::string& locale,
                        const std::variant<std::monostate, const char*, std::int64_t>& version,
                        const std::optional<std::string>& clickId) {
        Platform::Locale::setIdentifierLookup([locale] { return locale; });
        Platform::Bundle::Dictionary information;
        if (const auto* const text = std::get_if<const char*>(&version)) {
            information.emplace("CFBundleVersion", std::string{*text});
        } else if (const auto* const number = std::get_if<std::int64_t>(&version)) {
            information.emplace("CFBundleVersion", *number);
        }
        Platform::Bundle::setMain(Platform::Bundle{information});
        Platform::Preferences::setLookup(
            [clickId](std::string_view key) { return key == "cid" ? clickId : std::nullopt; });
    }

    /// The default parameters of this fixture and `own`.
    static Parameters withDefaults(Parameters own) {
        own.insert({{"language", "en"}, {"region", "GB"}, {"version", "7100"}, {"os", "mac"}, {"partnersId", "7"}});
        return own;
    }

private:
    Platform::ScopedProcessValues scope_;
};

TEST_F(Calls, SendDefaultParametersWithTheirFallbacks) {
    using Expected = std::map<std::string, std::string>;
    install("de_AT.UTF-8", "7.1b", "abc");
    EXPECT_EQ(StatusCallV1(live, base, -3).defaultParameters(), (Expected{{"language", "de"},
                                                                          {"region", "AT"},
                                                                          {"version", "7.1b"},
                                                                          {"os", "mac"},
                                                                          {"partnersId", "-3"},
                                                                          {"clickid", "abc"}}));
    install("C", std::int64_t{7100}, std::nullopt);
    EXPECT_EQ(StatusCallV1(live, base, 0).defaultParameters(),
              (Expected{{"language", "en"}, {"region", "US"}, {"version", "7.x"}, {"os", "mac"}, {"partnersId", "0"}}));
}

TEST_F(Calls, DescribeTheirEndpoints) {
    struct Row {
        const ApiCallV1& call;
        HttpMethod method;
        ParameterEncoding encoding;
        const char* url;
        Parameters own;
    };
    const UserCallV1 user{live, 7, base};
    const NewUserCallV1 newUser{live, 7, base, "e@x", "pw", "desk", "ID"};
    const LoginCallV1 login{live, 7, base, false};
    const LoginCallV1 importing{live, 7, base, true};
    const LogoutCallV1 logout{live, 7, base, "t/k?1"};
    const UpdateUserCallV1 update{live, 7, base, UserField::password, "n", "o"};
    const UpdateUserCallV1 updateEmail{live, 7, base, UserField::email, "n", "o"};
    const AuthTokenCallV1 authToken{live, 7, base};
    const AddDeviceCallV1 addDevice{live, 7, base};
    const StatusCallV1 status{live, base, 7};
    const DevicesCallV1 devices{live, 7, base};
    const RemoveDeviceCallV1 removeDevice{live, 7, base};
    const CountryCallV1 countries{live, 7, base, 12, 52.5, 13.4};
    const CountryCallV1 halfPosition{live, 7, base, 12, 52.5};
    const ServerCallV1 servers{live, 7, base, 12, "DE", 52.5, 13.4, ServerJsonKind::short_};
    const ServerCallV1 byService{live, 7, base, 12, "DE", 5};
    const ServerCallV1 oneServer{live, 7, base, 42};
    const DefaultFavoritesCallV1 favorites{live, 7, base, 9};
    constexpr auto url = ParameterEncoding::url;
    constexpr auto json = ParameterEncoding::json;
    const Row rows[] = {
        {user, HttpMethod::get, url, "https://h.example/vb/users/me", {{"flags", "17"}}},
        {newUser,
         HttpMethod::post,
         json,
         "https://h.example/vb/users",
         {{"username", "e@x"},
          {"password", "pw"},
          {"useremail", "e@x"},
          {"source", "mac"},
          {"x_auth_machinename", "desk"},
          {"x_auth_machineid", "ID"},
          {"hid", "ID"}}},
        {login, HttpMethod::post, url, "https://h.example/vb/oauth/access_token", {}},
        {importing, HttpMethod::post, url, "https://h.example/vb/oauth/access_token", {{"import", "1"}}},
        {logout, HttpMethod::delete_, url, "https://h.example/vb/users/me/access_tokens/t/k%3F1", {}},
        {update,
         HttpMethod::put,
         json,
         "https://h.example/vb/users/me",
         {{"new_password", "n"}, {"old_password", "o"}}},
        {updateEmail, HttpMethod::put, json, "https://h.example/vb/users/me", {{"new_email", "n"}}},
        {authToken, HttpMethod::get, url, "https://h.example/vb/users/me/authtoken", {}},
        {addDevice, HttpMethod::post, url, "https://h.example/vb/oauth/access_token", {}},
        {status, HttpMethod::get, url, "https://h.example/vb/status", {}},
        {devices, HttpMethod::get, json, "https://h.example/vb/users/me/access_tokens", {}},
        {removeDevice, HttpMethod::get, url, "https://h.example/vb/", {}},
        {countries,
         HttpMethod::get,
         url,
         "https://h.example/vb/servers",
         {{"filter", 12}, {"filter_user_latitude", 52.5}, {"filter_user_longitude", 13.4}}},
        {halfPosition, HttpMethod::get, url, "https://h.example/vb/servers", {{"filter", 12}}},
        {servers,
         HttpMethod::get,
         url,
         "https://h.example/vb/servers",
         {{"filter", 12},
          {"filter_protocol", "ipsec"},
          {"filter_country", "DE"},
          {"filter_user_latitude", 52.5},
          {"filter_user_longitude", 13.4}}},
        {byService,
         HttpMethod::get,
         url,
         "https://h.example/vb/servers",
         {{"filter", 12}, {"filter_protocol", "ipsec"}, {"filter_country", "DE"}, {"filter_content_id", 5}}},
        {oneServer, HttpMethod::get, url, "https://h.example/vb/servers/42", {}},
        {favorites, HttpMethod::get, url, "https://h.example/vb/servers", {{"filter", 9}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        EXPECT_EQ(row.call.method(), row.method);
        EXPECT_EQ(row.call.encoding(), row.encoding);
        EXPECT_EQ(row.call.url().absoluteString(), row.url);
        EXPECT_EQ(row.call.headers(), std::nullopt);
        EXPECT_EQ(row.call.parameters(), withDefaults(row.own));
    }
}

TEST_F(Calls, LetDefaultParametersWinOverTheirOwn) {
    class Biased final : public ApiCallV1 {
    public:
        Biased() : ApiCallV1{HttpMethod::get, "p", std::nullopt, live, ParameterEncoding::url, base, 7} {}

    protected:
        [[nodiscard]] Parameters ownParameters() const override { return {{"language", "xx"}, {"x", 1}}; }
    };
    EXPECT_EQ(Biased{}.parameters(), withDefaults({{"x", 1}}));
}

TEST(CallUrlDeathTest, EndsTheProcessWhenTheBaseUrlIsNone) {
    EXPECT_DEATH(static_cast<void>(StatusCallV1(live, "https://no host/vb", 7).url()), "is no URL");
}

}  // namespace
}  // namespace Tarnwick_API
