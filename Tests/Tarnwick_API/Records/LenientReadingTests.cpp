#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/LenientReading.hpp>

#include "JsonSupport.hpp"

#include <cerrno>
#include <chrono>
#include <cmath>
#include <limits>
#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

using namespace std::chrono_literals;
using Platform::JsonDocument;
using Platform::JsonObject;

constexpr auto none = std::nullopt;

TEST(LenientReading, OfNumbersAndFlags) {
    struct Row {
        const char* value = nullptr;
        std::optional<std::int64_t> integer;
        std::optional<bool> flag;
        std::optional<double> real;
    };
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const Row rows[] = {
        {"42", 42, false, 42.0},
        {"1", 1, true, 1.0},
        {"1.0", 1, true, 1.0},
        {"1e0", 1, true, 1.0},
        {"0", 0, false, 0.0},
        {"2", 2, false, 2.0},
        {"-1", -1, false, -1.0},
        {"1e3", 1000, false, 1000.0},
        {"-0", 0, false, 0.0},
        {"42.5", none, none, 42.5},
        {"9223372036854775807", 9223372036854775807, false, 9.2233720368547758e18},
        {"9223372036854775808", none, none, 9.2233720368547758e18},
        {"123456789012345678901234567890", none, none, 1.2345678901234568e29},
        {"true", none, true, none},
        {"false", none, false, none},
        {"null", none, none, none},
        {"[1]", none, none, none},
        {"{}", none, none, none},
        {R"("42")", 42, false, 42.0},
        {R"("1")", 1, true, 1.0},
        {R"("true")", none, true, none},
        {R"("0")", 0, false, 0.0},
        {R"("TRUE")", none, false, none},
        {R"("yes")", none, false, none},
        {R"("1.0")", none, false, 1.0},
        {R"(" true")", none, false, none},
        {R"("+42")", 42, false, 42.0},
        {R"("+1.5")", none, false, 1.5},
        {R"("-0")", 0, false, 0.0},
        {R"("007")", 7, false, 7.0},
        {R"("9223372036854775807")", 9223372036854775807, false, 9.2233720368547758e18},
        {R"("-9223372036854775808")", std::numeric_limits<std::int64_t>::min(), false, -9.2233720368547758e18},
        {R"("9223372036854775808")", none, false, 9.2233720368547758e18},
        {R"(" 42")", none, false, none},
        {R"("\u000b42")", none, false, none},
        {R"("42 ")", none, false, none},
        {R"("42\n")", none, false, none},
        {R"("")", none, false, none},
        {R"("+")", none, false, none},
        {R"("-")", none, false, none},
        {R"("+-5")", none, false, none},
        {R"("--1")", none, false, none},
        {R"("4.2")", none, false, 4.2},
        {R"("52.52")", none, false, 52.52},
        {R"("1e3")", none, false, 1000.0},
        {R"(".5")", none, false, 0.5},
        {R"("5.")", none, false, 5.0},
        {R"("0x10")", none, false, 16.0},
        {R"("0x1p3")", none, false, 8.0},
        {R"("inf")", none, false, infinity},
        {R"("-Infinity")", none, false, -infinity},
        {R"("1e400")", none, false, none},
        {R"("-1e400")", none, false, none},
        {R"("1e-400")", none, false, none},
        {R"("4e-320")", none, false, 4e-320},
        {R"("1,5")", none, false, none},
        {R"("+1,5")", none, false, none},
        {R"("1_000")", none, false, none},
        {R"("12px")", none, false, none},
        {R"("n/a")", none, false, none},
        {R"("\u0664\u0662")", none, false, none},
        {R"("42\u0000")", none, false, none},
        {R"("+42\u0000")", none, false, none},
        {R"("+0000000000000000000000000000000000000000000000000000000000000000001.5")", none, false, 1.5},
        {R"("+0000000000000000000000000000000000000000000000000000000000001.5")", none, false, 1.5},
        {R"("+000000000000000000000000000000000000000000000000000000000001.5")", none, false, 1.5},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.value);
        const JsonDocument document{std::string{R"({"k":)"} + row.value + "}"};
        const auto object = document.root().require<JsonObject>();
        EXPECT_EQ(decodeInt(object, "k"), row.integer);
        EXPECT_EQ(decodeBool(object, "k"), row.flag);
        EXPECT_EQ(decodeDouble(object, "k"), row.real);
        EXPECT_EQ(decodeTimeInterval(object, "k"), row.real);
        EXPECT_EQ(decodeInt(object, "K"), none);
        EXPECT_EQ(decodeBool(object, "K"), none);
        EXPECT_EQ(decodeDouble(object, "K"), none);
    }
    const JsonDocument document{R"({"nan":"NaN","minus":"-0","zero":"0x0","tiny":"1e-400"})"};
    const auto object = document.root().require<JsonObject>();
    EXPECT_TRUE(std::isnan(decodeDouble(object, "nan").value()));
    EXPECT_TRUE(std::signbit(decodeDouble(object, "minus").value()));
    errno = ERANGE;
    EXPECT_EQ(decodeDouble(object, "zero"), 0.0);
    EXPECT_EQ(errno, ERANGE);
    errno = EDOM;
    EXPECT_EQ(decodeDouble(object, "tiny"), none);
    EXPECT_EQ(errno, EDOM);
}

TEST(LenientReading, OfTexts) {
    const JsonDocument document{R"({"t":"a\u0000b","e":"","n":1,"b":true,"z":null,"l":["x"]})"};
    const auto object = document.root().require<JsonObject>();
    EXPECT_EQ(decodeString(object, "t"), (std::string{"a\0b", 3}));
    EXPECT_EQ(decodeString(object, "e"), "");
    for (const auto* key : {"n", "b", "z", "l", "missing"}) {
        EXPECT_EQ(decodeString(object, key), none) << key;
        EXPECT_EQ(decodeDate(object, key), none) << key;
    }
}

TEST(LenientReading, OfDates) {
    using Time = std::optional<std::chrono::sys_seconds>;
    constexpr auto firstOfMarch = std::chrono::sys_days{2019y / 3 / 1};
    struct Row {
        const char* text = nullptr;
        Time in24Hours;
        Time in12Hours;
    };
    const Row rows[] = {
        {"2019-03-01 17:05:00", firstOfMarch + 17h + 5min, none},
        {"2019-03-01 09:15:00", firstOfMarch + 9h + 15min, firstOfMarch + 9h + 15min},
        {"2019-03-01 12:15:00", firstOfMarch + 12h + 15min, firstOfMarch + 15min},
        {"2019-03-01 00:15:59", firstOfMarch + 15min + 59s, firstOfMarch + 15min + 59s},
        {"2019-03-01 13:15:00", firstOfMarch + 13h + 15min, none},
        {"2019-03-01 23:59:59", firstOfMarch + 24h - 1s, none},
        {"2019-03-01 24:00:00", none, none},
        {"2019-03-01 09:60:00", none, none},
        {"2019-03-01 09:00:60", none, none},
        {"2019-3-1 7:5:0", firstOfMarch + 7h + 5min, firstOfMarch + 7h + 5min},
        {"2019-003-001 007:005:000", firstOfMarch + 7h + 5min, firstOfMarch + 7h + 5min},
        {"2020-02-29 01:00:00", std::chrono::sys_days{2020y / 2 / 29} + 1h, std::chrono::sys_days{2020y / 2 / 29} + 1h},
        {"2019-02-29 01:00:00", none, none},
        {"2019-13-01 01:00:00", none, none},
        {"2019-00-01 01:00:00", none, none},
        {"2019-03-00 01:00:00", none, none},
        {"0000-00-00 00:00:00", none, none},
        {"0001-01-01 00:00:00", std::chrono::sys_days{1y / 1 / 1}, std::chrono::sys_days{1y / 1 / 1}},
        {"9999-12-31 00:00:00", std::chrono::sys_days{9999y / 12 / 31}, std::chrono::sys_days{9999y / 12 / 31}},
        {"10000-01-01 00:00:00", none, none},
        {"67555-03-01 00:00:00", none, none},
        {"2019-259-01 00:00:00", none, none},
        {"2019-03-257 00:00:00", none, none},
        {"0000002019-03-01 00:00:00", none, none},
        {"99999999999-03-01 00:00:00", none, none},
        {"19-03-01 00:00:00", std::chrono::sys_days{19y / 3 / 1}, std::chrono::sys_days{19y / 3 / 1}},
        {"  2019- 03- 01 \t\u2009 09: 15: 00 \t\u00a0\u3000", firstOfMarch + 9h + 15min, firstOfMarch + 9h + 15min},
        {"2019-03-01 09:15:00\n", none, none},
        {"2019-03-01 09:15:00Z", none, none},
        {"2019-03-01 09:15:00 +0000", none, none},
        {"2019-03-01 09:15:00 PM", none, none},
        {"2019-03-01 09:15:00.123", none, none},
        {"2019-03-01T09:15:00Z", none, none},
        {"2019-03-0109:15:00", none, none},
        {"2019 -03-01 09:15:00", none, none},
        {"2019-03-01 09 :15:00", none, none},
        {"-2019-03-01 09:15:00", none, none},
        {"2019--3-01 09:15:00", none, none},
        {"2019-03-01 +9:15:00", none, none},
        {"2019/03/01 09:15:00", none, none},
        {"2019-03-01", none, none},
        {"2019-03-01 09:15", none, none},
        {"2019-03-01 09:15:", none, none},
        {"", none, none},
        {"garbage", none, none},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        std::string json = R"({"k":")" + std::string{row.text} + "\"}";
        for (std::size_t at = 0; (at = json.find_first_of("\n\t", at)) != std::string::npos;) {
            json.replace(at, 1, json[at] == '\n' ? "\\n" : "\\t");
        }
        const JsonDocument document{json};
        EXPECT_EQ(decodeDate(document.root().require<JsonObject>(), "k"), row.in24Hours);
        json.insert(1, R"("id":"1","token":"t","consumer":{"device_type":"mac"},)");
        EXPECT_EQ(decoded<Device>(with(json, "\"k\"", "\"created\"")).created, row.in12Hours);
    }
}

}  // namespace
}  // namespace Tarnwick_API
