#include <Platform/Http/Requests/QueryEncoding.hpp>

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace Tarnwick_API::Platform;
using List = ParameterValue::List;
using Map = ParameterValue::Map;

TEST(QueryEncoding, WritesEachKindOfValue) {
    std::string allBytes;
    for (int byte = 0; byte < 0x80; ++byte) {
        allBytes += static_cast<char>(byte);
    }
    struct Row {
        Parameters parameters;
        std::string expected;
    };
    const Row rows[] = {
        {{}, ""},
        {{{"q", "a b"}}, "q=a%20b"},
        {{{"a+b", "1+1=2&x"}}, "a%2Bb=1%2B1%3D2%26x"},
        {{{"u", "https://h/p?x=1#f"}}, "u=https%3A//h/p?x%3D1%23f"},
        {{{"é", "ü☕😀"}}, "%C3%A9=%C3%BC%E2%98%95%F0%9F%98%80"},
        {{{"p", "100%41"}}, "p=100%2541"},
        {{{"a", allBytes}},
         "a=%00%01%02%03%04%05%06%07%08%09%0A%0B%0C%0D%0E%0F%10%11%12%13%14%15%16%17%18%19%1A%1B%1C%1D%1E%1F"
         "%20%21%22%23%24%25%26%27%28%29%2A%2B%2C-./0123456789%3A%3B%3C%3D%3E?%40ABCDEFGHIJKLMNOPQRSTUVWXYZ"
         "%5B%5C%5D%5E_%60abcdefghijklmnopqrstuvwxyz%7B%7C%7D~%7F"},
        {{{"arr", List{"a", 1, true}}}, "arr%5B%5D=a&arr%5B%5D=1&arr%5B%5D=1"},
        {{{"d", Map{{"b", 1}, {"a", List{2}}}}}, "d%5Ba%5D%5B%5D=2&d%5Bb%5D=1"},
        {{{"l", List{ParameterValue{List{Map{{"k", false}}}}}}}, "l%5B%5D%5B%5D%5Bk%5D=0"},
        {{{"n", -5}, {"b", false}, {"e", ""}, {"Z", List{}}}, "b=0&e=&n=-5"},
        {{{"a", 1}, {"_", 2}, {"Z", 3}, {"é", 4}}, "Z=3&_=2&a=1&%C3%A9=4"},
        {{{"n", std::int64_t{-9'223'372'036'854'775'807} - 1}}, "n=-9223372036854775808"},
        // Not UTF-8: one replacement character for each broken sequence.
        {{{"x\xFF", "\xC3("}}, "x%EF%BF%BD=%EF%BF%BD%28"},
        {{{"r", 52.52}}, "r=52.52"},
        {{{"r", 52.0}}, "r=52"},
        {{{"r", -0.0}}, "r=-0"},
        {{{"r", -33.8688}}, "r=-33.8688"},
        {{{"r", 98.4}}, "r=98.40000000000001"},
        {{{"r", 77.1}}, "r=77.09999999999999"},
        {{{"r", 1e16}}, "r=1e%2B16"},
        {{{"r", 1.7976931348623157e308}}, "r=1.797693134862316e%2B308"},
        {{{"r", -2.2250738585072014e-308}}, "r=-2.225073858507201e-308"},
        {{{"language", "en"},
          {"os", "mac"},
          {"partnersId", 7},
          {"region", "GB"},
          {"version", 7100},
          {"filter", 12},
          {"filter_protocol", "ipsec"},
          {"filter_user_latitude", 52.52},
          {"filter_user_longitude", 13.405}},
         "filter=12&filter_protocol=ipsec&filter_user_latitude=52.52&filter_user_longitude=13.405&language=en&os=mac&"
         "partnersId=7&region=GB&version=7100"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(encodeQuery(row.parameters), row.expected);
    }
}

TEST(HttpRequest, PutsParametersWhereMethodAndEncodingSay) {
    using Method = HttpMethod;
    using Encoding = ParameterEncoding;
    const std::string form = "application/x-www-form-urlencoded; charset=utf-8";
    const std::string json = "application/json";
    const HttpHeaders own{{"CONTENT-TYPE", "own/1"}};
    struct Row {
        Method method;
        Encoding encoding;
        std::string url;
        Parameters parameters;
        HttpHeaders headers;
        std::string expectedUrl;
        std::optional<Bytes> expectedBody;
        HttpHeaders expectedHeaders;
    };
    const Parameters one{{"a", "/"}};
    const Row rows[] = {
        {Method::get, Encoding::url, "https://h/p", one, {}, "https://h/p?a=/", {}, {}},
        {Method::head, Encoding::url, "https://h/p?", one, {}, "https://h/p?&a=/", {}, {}},
        {Method::delete_, Encoding::url, "https://h/p?x=%20#f", one, own, "https://h/p?x=%20&a=/#f", {}, own},
        {Method::get, Encoding::url, "https://h/p", {}, {}, "https://h/p", {}, {}},
        {Method::post, Encoding::url, "https://h/p?x", one, {}, "https://h/p?x", "a=/", {{"Content-Type", form}}},
        {Method::patch, Encoding::url, "https://h", {}, {}, "https://h", "", {{"Content-Type", form}}},
        {Method::options, Encoding::url, "https://h", one, own, "https://h", "a=/", own},
        {Method::get, Encoding::json, "https://h/p", one, {}, "https://h/p", R"({"a":"\/"})", {{"Content-Type", json}}},
        {Method::put, Encoding::json, "https://h/p", {}, own, "https://h/p", "{}", own},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.expectedUrl);
        const HttpRequest request{row.method, Url::fromString(row.url).value(), row.parameters, row.encoding,
                                  row.headers};
        EXPECT_EQ(request.url().absoluteString(), row.expectedUrl);
        EXPECT_EQ(request.body(), row.expectedBody);
        EXPECT_EQ(request.headers(), row.expectedHeaders);
        EXPECT_EQ(request.encodingError(), std::nullopt);
    }
}

TEST(HttpRequest, RefusesWhatCannotBeSent) {
    struct Row {
        std::string url;
        HttpHeaders headers;
        bool isRefused;
    };
    using namespace std::string_literals;
    const Row rows[] = {
        {"https://h", {{"X-1", "a\tb"}, {"X!#$%&'*+-.^_`|~", "é"}, {"Empty", ""}}, false},
        {"https://h", {{"X", "a\r\nY: b"}}, true},
        {"https://h", {{"X", "a\n"}}, true},
        {"https://h", {{"X", "a\0b"s}}, true},
        {"https://h", {{"", "a"}}, true},
        {"https://h", {{"X Y", "a"}}, true},
        {"https://h", {{"X:", "a"}}, true},
        {"https://h", {{"X\0Y"s, "a"}}, true},
        {"https://h", {{"Ü", "a"}}, true},
        {"https:///p", {}, true},
        {"h/p", {}, true},
        {"//h/p", {}, true},
    };
    for (const auto& row : rows) {
        const HttpRequest request{
            HttpMethod::get, Url::fromString(row.url).value(), {}, ParameterEncoding::url, row.headers};
        EXPECT_EQ(request.encodingError().has_value(), row.isRefused) << testing::PrintToString(row.headers) << row.url;
    }
}

}  // namespace
