#include <Platform/Json/JsonWriter.hpp>

#include <cstdint>
#include <limits>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace {

using namespace Tarnwick_API::Platform;
using List = ParameterValue::List;
using Map = ParameterValue::Map;

TEST(JsonWriter, WritesEveryKindOfValueCompactly) {
    EXPECT_EQ(encodeJson({}), "{}");
    const Parameters parameters{
        {"z", "text"},
        {"list", List{1, "two", 3.5, true, List{}, Map{}}},
        {"Z", false},
        {"map", Map{{"b", std::numeric_limits<std::int64_t>::min()}, {"a", std::numeric_limits<std::int64_t>::max()}}},
        {"\xC3\xA9", ""},
    };
    EXPECT_EQ(encodeJson(parameters),
              "{\"Z\":false,\"list\":[1,\"two\",3.5,true,[],{}],"
              "\"map\":{\"a\":9223372036854775807,\"b\":-9223372036854775808},\"z\":\"text\",\"\xC3\xA9\":\"\"}");
}

TEST(JsonWriter, EscapesTextAndMendsWhatIsNoUtf8) {
    struct Row {
        std::string text;
        std::string written;
    };
    const Row rows[] = {
        {"p/q\"r\\", R"(p\/q\"r\\)"},
        {"\b\f\n\r\t", R"(\b\f\n\r\t)"},
        {std::string{"\0\x01\x1F\x7F", 4}, "\\u0000\\u0001\\u001f\x7F"},
        {"\xC2\x85 \xE2\x80\xA8 \xF0\x9F\x98\x80", "\xC2\x85 \xE2\x80\xA8 \xF0\x9F\x98\x80"},
        {"a\xFFz", "a\xEF\xBF\xBDz"},
        {"\xE2\x82/", "\xEF\xBF\xBD\\/"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.written);
        EXPECT_EQ(encodeJson({{"k", row.text}}), "{\"k\":\"" + row.written + "\"}");
        EXPECT_EQ(encodeJson({{row.text, 1}}), "{\"" + row.written + "\":1}");
    }
}

TEST(JsonWriter, WritesRealsInTheirShortestFormAndRefusesWhatIsNotFinite) {
    const std::pair<double, const char*> rows[] = {
        {52.52, "52.52"},
        {0.1 + 0.2, "0.30000000000000004"},
        {1e22, "1e+22"},
        {-0.0, "-0"},
        {-2.2250738585072014e-308, "-2.2250738585072014e-308"},
    };
    for (const auto& [real, written] : rows) {
        EXPECT_EQ(encodeJson({{"r", real}}), std::string{"{\"r\":"} + written + "}");
    }
    using Limits = std::numeric_limits<double>;
    for (const double real : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
        EXPECT_EQ(encodeJson({{"list", List{Map{{"r", real}}}}}), std::nullopt);
    }
}

}  // namespace
