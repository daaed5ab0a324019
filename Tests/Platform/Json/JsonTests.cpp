#include <Tarnwick_API/Platform/Json/Json.hpp>

#include <cstdint>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace Tarnwick_API::Platform;
using Kind = DecodingError::Kind;
using testing::ElementsAre;
using namespace std::string_literals;

constexpr auto notJson = "The given data was not valid JSON.";

template <typename Call>
std::optional<DecodingError> errorOf(Call&& call) {
    try {
        call();
    } catch (const DecodingError& error) {
        return error;
    }
    return std::nullopt;
}

bool isJson(const Bytes& text) {
    const auto error = errorOf([&] { JsonDocument{text}; });
    EXPECT_TRUE(!error || *error == (DecodingError{Kind::dataCorrupted, {}, notJson})) << text;
    return !error;
}

Bytes repeated(std::string_view part, std::size_t count) {
    Bytes text;
    for (std::size_t i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

TEST(JsonText, IsAccepted) {
    const Bytes rows[] = {
        "{}",
        " [1,\t2\r\n] \n",
        "\xEF\xBB\xBF{}",
        "42",
        "null",
        R"("x")",
        "[1e-400]",
        "[-0]",
        "[1e308]",
        R"({"a":1,"a":2})",
        R"(["\u0000"])",
        R"(["\ud83d\ude00"])",
        "[\"\x7F\xC2\x85\"]",
        "[18446744073709551615,-9223372036854775808]",
        // Beyond 64 bits, beside texts that only look so.
        "[18446744073709551616]",
        "[-9223372036854775809]",
        "[123456789012345678901234567890,\"\\\\\",1]",
        R"({"18446744073709551616":"\"18446744073709551616","b":[18446744073709551616]})",
        "18446744073709551616",
        "[" + repeated("9", 308) + "]",
    };
    for (const Bytes& text : rows) {
        EXPECT_TRUE(isJson(text)) << text;
    }
}

TEST(JsonText, IsRefused) {
    const Bytes rows[] = {
        "",
        " \n",
        "\xEF\xBB\xBF",
        "\xEF\xBB\xBF\xEF\xBB\xBF{}",
        "{}{}",
        "[1] x",
        "[1,]",
        R"({"a":1,})",
        "[,]",
        "[1,,2]",
        "[1 2]",
        "{\"a\" 1}",
        "{a:1}",
        "{1:1}",
        "['a']",
        "[1] // x",
        "[/**/1]",
        "[NaN]",
        "[Infinity]",
        "[+1]",
        "[.5]",
        "[5.]",
        "[01]",
        "[-]",
        "[1e]",
        "[0x10]",
        "[1e400]",
        "[-1e400]",
        "[tru]",
        "[nul]",
        "[True]",
        "[\"\n\"]",
        "[\"\x01\"]",
        "[\"\\x\"]",
        "[\"\\u12\"]",
        "[\"a",
        R"(["\ud800"])",
        R"(["\udc00"])",
        R"(["\udc00\ud800"])",
        "[\"\xFF\"]",
        "[\"\xC0\xAF\"]",
        "[\"\xED\xA0\x80\"]",
        "[\"\xF5\x80\x80\x80\"]",
        "[\"\xE2\x82\"]",
        "{}\0"s,
        "[1]\0x"s,
        "\xFF\xFE{\0}\0"s,
        "{\0}\0"s,
        // No integer beyond 64 bits is a number that begins with a zero, or one that no real can hold.
        "[018446744073709551616]",
        "[-018446744073709551616]",
        "[18446744073709551616,]",
        "[18446744073709551616",
        "[18446744073709551616 18446744073709551616]",
        "[18446744073709551616x]",
        "[\"a\",18446744073709551616,\"\\",
        "[1844674407370955161-6]",
        "[" + repeated("9", 400) + "]",
        "[18446744073709551616,1e400]",
    };
    for (const Bytes& text : rows) {
        EXPECT_FALSE(isJson(text)) << text;
    }
    const Bytes whole = R"({"a":[1,-2.5e3,"\u00e9\n",true,false,null,{"b":{}}],"c":12345678901234567890123})";
    ASSERT_TRUE(isJson(whole));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(isJson(whole.substr(0, length))) << length;
    }
}

TEST(JsonText, Nests512ContainersDeep) {
    for (const auto& [open, close] : {std::pair{"[", "]"}, std::pair{R"({"a":)", "}"}}) {
        const auto nested = [open = open, close = close](std::size_t depth) {
            return repeated(open, depth - 1) + "[]" + repeated(close, depth - 1);
        };
        EXPECT_TRUE(isJson(nested(512)));
        EXPECT_FALSE(isJson(nested(513)));
        // The limit holds as well after the parser's buffers have grown, and on the way of the long integers.
        EXPECT_FALSE(isJson("[\"" + Bytes(100'000, 'x') + "\"," + nested(512) + "]"));
        EXPECT_TRUE(isJson("[18446744073709551616," + nested(511) + "]"));
        EXPECT_FALSE(isJson("[18446744073709551616," + nested(512) + "]"));
        EXPECT_FALSE(isJson(repeated(open, 1'000'000)));
    }
}

/// What a strict read of `{"k":value}` gives: the value as text, or the error's kind and path.
template <typename T>
std::string outcome(const JsonObject& object) {
    const auto show = [](const T& value) {
        std::ostringstream text;
        text.precision(17);
        text << std::boolalpha << value;
        return text.str();
    };
    const auto call = [&](auto read) -> std::string {
        try {
            return read();
        } catch (const DecodingError& error) {
            constexpr const char* kinds[] = {"no key", "no value", "mismatch", "corrupted"};
            EXPECT_EQ(error.pathText(), error.kind() == Kind::keyNotFound ? "" : "k");
            return kinds[static_cast<std::size_t>(error.kind())];
        }
    };
    std::string strict = call([&] { return show(object.require<T>("k")); });
    const std::string ifPresent = call([&] {
        const auto value = object.ifPresent<T>("k");
        return value ? show(*value) : "none";
    });
    // Reading if present differs in nothing but that nothing is no error.
    EXPECT_EQ(ifPresent, strict == "no key" || strict == "no value" ? "none" : strict);
    return strict;
}

TEST(JsonObject, ReadsMembersStrictly) {
    struct Row {
        const char* json = nullptr;
        const char* integer = nullptr;
        const char* number = nullptr;
        const char* flag = "mismatch";
        const char* text = "mismatch";
    };
    const Row rows[] = {
        {R"({"k":42})", "42", "42"},
        {R"({"k":42.0})", "42", "42"},
        {R"({"k":4.2e1})", "42", "42"},
        {R"({"k":42.5})", "corrupted", "42.5"},
        {R"({"k":9223372036854775807})", "9223372036854775807", "9.2233720368547758e+18"},
        {R"({"k":9223372036854775808})", "corrupted", "9.2233720368547758e+18"},
        {R"({"k":9223372036854775808.0})", "corrupted", "9.2233720368547758e+18"},
        {R"({"k":-9223372036854775808})", "-9223372036854775808", "-9.2233720368547758e+18"},
        {R"({"k":-9223372036854774784.0})", "-9223372036854774784", "-9.2233720368547748e+18"},
        {R"({"k":-9223372036854775809})", "corrupted", "-9.2233720368547758e+18"},
        {R"({"k":18446744073709551616})", "corrupted", "1.8446744073709552e+19"},
        {R"({"k":1e30})", "corrupted", "1e+30"},
        {R"({"k":-0})", "0", "0"},
        {R"({"k":-0.0})", "0", "-0"},
        {R"({"k":1e-400})", "0", "0"},
        {R"({"k":true})", "mismatch", "mismatch", "true"},
        {R"({"k":false})", "mismatch", "mismatch", "false"},
        {R"({"k":"42"})", "mismatch", "mismatch", "mismatch", "42"},
        {R"({"k":""})", "mismatch", "mismatch", "mismatch", ""},
        {R"({"k":null})", "no value", "no value", "no value", "no value"},
        {R"({"K":1,"":2,"kk":3})", "no key", "no key", "no key", "no key"},
        {R"({"k":[]})", "mismatch", "mismatch"},
        {R"({"k":{}})", "mismatch", "mismatch"},
        {R"({"k":1,"k":2})", "1", "1"},
        {R"({"k":null,"k":2})", "no value", "no value", "no value", "no value"},
        {R"({"\u006b":1})", "1", "1"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.json);
        const JsonDocument document{row.json};
        const auto object = document.root().require<JsonObject>();
        EXPECT_EQ(outcome<std::int64_t>(object), row.integer);
        EXPECT_EQ(outcome<bool>(object), row.flag);
        EXPECT_EQ(outcome<std::string>(object), row.text);
        EXPECT_EQ(outcome<std::string_view>(object), row.text);
        EXPECT_EQ(outcome<double>(object), row.number);
        // The reads without errors agree with the strict ones.
        const auto member = object.find("k");
        const auto succeeds = [](std::string_view text) {
            return text != "mismatch" && text != "corrupted" && !text.starts_with("no ");
        };
        EXPECT_EQ(member && member->integer(), succeeds(row.integer));
        EXPECT_EQ(member && member->number(), succeeds(row.number));
        EXPECT_EQ(member && member->boolean(), succeeds(row.flag));
        EXPECT_EQ(member && member->string(), succeeds(row.text));
    }
}

TEST(JsonObject, KeepsTextsAsTheyAre) {
    const JsonDocument document{R"({"":"empty","a\u0000b":"x\u0000\u00e9\ud83d\ude00\/"})"};
    const auto object = document.root().require<JsonObject>();
    EXPECT_EQ(object.require<std::string>(""), "empty");
    EXPECT_EQ(object.require<std::string>("a\0b"s), "x\0\xC3\xA9\xF0\x9F\x98\x80/"s);
    EXPECT_FALSE(object.find("a"));
}

TEST(JsonErrors, TellWhatAndWhere) {
    const JsonDocument document{R"({"list":[{"id":1},{"id":"x"}],"null":null,"real":42.5,"big":9223372036854775808,
        "flag":true,"text":"t","object":{"list":[[0],[0,null]]}})"};
    const auto root = document.root().require<JsonObject>();
    const auto id = [](const JsonValue& value) { return value.require<JsonObject>().require<std::int64_t>("id"); };
    struct Row {
        std::function<void()> read;
        DecodingError error;
        const char* pathText;
    };
    const Row rows[] = {
        {[&] { (void)root.nestedArray("list", id); },
         {Kind::typeMismatch, {"list", 1U, "id"}, "Expected to decode Int but found a string/data instead."},
         "list.Index 1.id"},
        {[&] {
             (void)root.nested("object", [](const JsonObject& object) {
                 return object.nestedArray("list", [](const JsonValue& value) {
                     return value.require<JsonArray>().map([](const JsonValue& v) { return v.require<double>(); });
                 });
             });
         },
         {Kind::valueNotFound, {"object", "list", 1U, 1U}, "Expected Double value but found null instead."},
         "object.list.Index 1.Index 1"},
        {[&] { (void)root.nestedIfPresent("object", [](const JsonObject& o) { return o.require<bool>("id"); }); },
         {Kind::keyNotFound,
          {"object"},
          R"(No value associated with key CodingKeys(stringValue: "id", intValue: nil) ("id").)"},
         "object"},
        {[&] { (void)root.require<JsonObject>("null"); },
         {Kind::valueNotFound, {"null"}, "Cannot get keyed decoding container -- found null value instead."},
         "null"},
        {[&] { (void)root.require<JsonArray>("null"); },
         {Kind::valueNotFound, {"null"}, "Cannot get unkeyed decoding container -- found null value instead."},
         "null"},
        {[&] { (void)root.require<std::int64_t>("real"); },
         {Kind::dataCorrupted, {"real"}, "Parsed JSON number <42.5> does not fit in Int."},
         "real"},
        {[&] { (void)root.require<std::int64_t>("big"); },
         {Kind::dataCorrupted, {"big"}, "Parsed JSON number <9223372036854775808> does not fit in Int."},
         "big"},
        {[&] { (void)root.require<std::string>("flag"); },
         {Kind::typeMismatch, {"flag"}, "Expected to decode String but found a number instead."},
         "flag"},
        {[&] { (void)root.require<bool>("object"); },
         {Kind::typeMismatch, {"object"}, "Expected to decode Bool but found a dictionary instead."},
         "object"},
        {[&] { (void)root.ifPresent<JsonObject>("list"); },
         {Kind::typeMismatch, {"list"}, "Expected to decode Dictionary<String, Any> but found an array instead."},
         "list"},
        {[&] { (void)document.root().require<JsonArray>(); },
         {Kind::typeMismatch, {}, "Expected to decode Array<Any> but found a dictionary instead."},
         ""},
    };
    for (const Row& row : rows) {
        const auto error = errorOf(row.read);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->debugDescription(), row.error.debugDescription());
        EXPECT_EQ(error->pathText(), row.pathText);
        EXPECT_EQ(*error, row.error);
        const bool isMissing = error->kind() == Kind::keyNotFound || error->kind() == Kind::valueNotFound;
        EXPECT_EQ(error->localizedDescription(),
                  isMissing ? "The data couldn’t be read because it is missing."
                            : "The data couldn’t be read because it isn’t in the correct format.");
    }
    EXPECT_FALSE(root.nestedIfPresent("null", [](const JsonObject&) { return 1; }));
    EXPECT_FALSE(root.nestedIfPresent("missing", [](const JsonObject&) { return 1; }));
}

TEST(JsonDocument, LivesBesideOthersAndOutlivesItsText) {
    const auto firstOf = [](const JsonDocument& document) {
        return (*document.root().require<JsonArray>().begin()).require<std::string>();
    };
    std::optional<Bytes> text{R"(["outer",18446744073709551616])"};
    const JsonDocument outer{*text};
    text.reset();
    for (int round = 0; round < 2; ++round) {
        // Long enough that no parser is kept after it.
        const JsonDocument inner{"[\"inner\"" + Bytes(std::size_t{9} << 20U, ' ') + "]"};
        EXPECT_FALSE(isJson("["));
        Bytes inPlace = R"(["in place"])";
        inPlace.reserve(inPlace.size() + JsonDocument::padding);
        const JsonDocument third{inPlace};
        EXPECT_EQ(firstOf(third), "in place");
        EXPECT_EQ(firstOf(inner), "inner");
        EXPECT_EQ(firstOf(outer), "outer");
    }
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([&, number] {
            for (int round = 0; round < 100; ++round) {
                const JsonDocument mine{"[\"" + std::to_string(number) + "\"]"};
                EXPECT_EQ(firstOf(mine), std::to_string(number));
                EXPECT_EQ(firstOf(outer), "outer");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(JsonArray, CountsAndMapsItsElementsInOrder) {
    const JsonDocument document{"[[3,1,2],[]]"};
    const auto sizes = document.root().require<JsonArray>().map([](const JsonValue& element) {
        const auto array = element.require<JsonArray>();
        EXPECT_EQ(array.map([](const JsonValue& value) { return value.integer().value(); }),
                  array.size() == 0 ? std::vector<std::int64_t>{} : (std::vector<std::int64_t>{3, 1, 2}));
        return array.size();
    });
    EXPECT_THAT(sizes, ElementsAre(3, 0));
}

}  // namespace
