#include <Tarnwick_API/Calls/AccountCalls.hpp>
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

TEST_F(Calls, SendAnOldValueForAPasswordAlone) {
    EXPECT_EQ(UpdateUserCallV1(live, 7, base, UserField::password, "n", "o").parameters(),
              withDefaults({{"new_password", "n"}, {"old_password", "o"}}));
    EXPECT_EQ(UpdateUserCallV1(live, 7, base, UserField::email, "n", "o").parameters(),
              withDefaults({{"new_email", "n"}}));
}

TEST_F(Calls, LetDefaultParametersWinOverTheirOwn) {
    class Biased final : public ApiCallV1 {
    public:
        Biased() : ApiCallV1{{HttpMethod::get, "p", ParameterEncoding::url}, {live, 7, base}} {}

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
