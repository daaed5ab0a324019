#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include "BackendFixture.hpp"

#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using DecodeAnswer = Testing::BackendFixture;

TEST_F(DecodeAnswer, LogsWhereAndWhyItFailsButNoSecret) {
    struct Row {
        std::function<void(ApiVersion1&)> ask;
        const char* body = "";
        const char* line = "";
    };
    const auto login = [](ApiVersion1& api) { api.login("u", "p", false, {}); };
    const auto getServers = [](ApiVersion1& api) { api.getServers(1, "DE", {}, {}, {}); };
    const Row rows[] = {
        {login, R"({"oauth_token":"hush"})",
         "login(username:password:qvImport:onCompletion:) Decoding failed: No value associated with key "
         "CodingKeys(stringValue: \"oauth_token_secret\", intValue: nil) (\"oauth_token_secret\")."},
        {login, R"({"oauth_token":"hush","oauth_token_secret":99999999999999999999})",
         "login(username:password:qvImport:onCompletion:) Decoding failed at oauth_token_secret: Expected to decode "
         "String but found a number instead."},
        {[](ApiVersion1& api) { api.setToken("t", "s", {}); }, R"({"id":1.5,"user_name":"bob","active":1})",
         "currentUser(onCompletion:) Decoding failed at id: Parsed JSON number <1.5> does not fit in Int."},
        {[](ApiVersion1& api) { api.getServer(1, {}); },
         R"({"id":1,"name":"n","dnsname":"d","ip":"i","location":{"countrycode":"NO","language":null}})",
         "getServer(id:onCompletion:) Decoding failed at location.language: Expected String value but found null "
         "instead."},
        {getServers, R"([{"id":"many"}])",
         "getServers(filterId:countryCode:latitude:longitude:onCompletion:) Decoding failed: The value cannot be "
         "converted to an Int"},
        {[](ApiVersion1& api) { api.getDevices({}); }, "[",
         "getDevices(onCompletion:) Decoding failed: The given data was not valid JSON."},
    };
    for (const Row& row : rows) {
        std::vector<std::string> lines;
        Platform::Logging::setSink([&](const Platform::Logging::Entry& entry) {
            if (std::string_view{entry.file}.ends_with("Operations.cpp")) {
                lines.push_back(std::string{entry.function} + " " + std::string{entry.message});
            }
        });
        session->script({Testing::ScriptedHttpSession::answer(200, row.body)});
        row.ask(*backend);
        queue->runAll();
        Platform::Logging::setSink({});
        EXPECT_THAT(lines, ::testing::ElementsAre(row.line));
    }
}

}  // namespace
}  // namespace Tarnwick_API
