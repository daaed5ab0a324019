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

#include <gtest/gtest.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

using namespace Tarnwick_API::Platform;
using Kind = DecodingError::Kind;
using namespace std::string_literals;

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
    EXPECT_TRUE(!error || *error == (DecodingError{Kind::dataCorrupted, {}, "The given data was not valid JSON."}))
        << text;
    return !error;
}

Bytes repeated(std::string_view part, std::size_t count) {
    Bytes text;
    for (std::size_t i = 0; i < count; ++i) {
        text += part;
    }
    return text;
}

TEST(JsonText, MayHoldIntegersBeyond64BitsAndAByteOrderMark) {
    const Bytes whole = R"({"a":[1,-2.5e3,"\u00e9\n",true,false,null,{"b":{}}],"c":12345678901234567890123})";
    for (const Bytes& text :
         {"\xEF\xBB\xBF{}"s, "[18446744073709551616]"s, "[-9223372036854775809]"s, "18446744073709551616"s,
          R"({"18446744073709551616":"\"18446744073709551616","b":[18446744073709551616]})"s,
          "[123456789012345678901234567890,\"\\\\\",1]"s, "[" + Bytes(308, '9') + "]", whole}) {
        EXPECT_TRUE(isJson(text)) << text;
    }
    // No integer beyond 64 bits is a number that begins with a zero, or one that no real can hold.
    for (const Bytes& text :
         {""s, "\xEF\xBB\xBF"s, "\xEF\xBB\xBF\xEF\xBB\xBF{}"s, "{}\0"s, "[1,]"s, "[1e400]"s, "[01]"s, "[\"\xFF\"]"s,
          "[018446744073709551616]"s, "[-018446744073709551616]"s, "[18446744073709551616,]"s,
          "[18446744073709551616 18446744073709551616]"s, "[18446744073709551616x]"s, "[1844674407370955161-6]"s,
          "[\"a\",18446744073709551616,\"\\"s, "[" + Bytes(400, '9') + "]", "[18446744073709551616,1e400]"s}) {
        EXPECT_FALSE(isJson(text)) << text;
    }
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_FALSE(isJson(whole.substr(0, length))) << length;
    }
}

TEST(JsonText, Nests512ContainersDeep) {
    for (const auto& [open, close] : {std::pair{"[", "]"}, std::pair{R"({"a":)", "}"}}) {
        for (const auto* const innermost : {"[]", "[1]", R"(["[\"["])"}) {
            const auto nested = [=, open = open, close = close](std::size_t depth) {
                return repeated(open, depth - 1) + innermost + repeated(close, depth - 1);
            };
            EXPECT_TRUE(isJson(nested(512))) << innermost;
            EXPECT_FALSE(isJson(nested(513))) << innermost;
            // The limit holds as well after the parser's buffers have grown, and on the way of the long integers.
            EXPECT_FALSE(isJson("[\"" + Bytes(100'000, 'x') + "\"," + nested(512) + "]"));
            EXPECT_TRUE(isJson("[18446744073709551616," + nested(511) + "]"));
            EXPECT_FALSE(isJson("[18446744073709551616," + nested(512) + "]"));
        }
        EXPECT_FALSE(isJson(repeated(open, 1'000'000)));
    }
}

/// What a strict read of `{"k":value}` gives: the value as text, or the error's kind.
template <typename T>
std::string outcome(const JsonObject& object) {
    const auto outcomeOf = [](auto read) -> std::string {
        std::ostringstream text;
        text.precision(17);
        try {
            text << std::boolalpha << read();
        } catch (const DecodingError& error) {
            constexpr const char* kinds[] = {"no key", "no value", "mismatch", "corrupted"};
            return kinds[static_cast<std::size_t>(error.kind())];
        }
        return text.str();
    };
    auto strict = outcomeOf([&] { return object.require<T>("k"); });
    // Reading if present differs in nothing but that nothing is no error.
    if (strict.starts_with("no ")) {
        EXPECT_FALSE(object.ifPresent<T>("k"));
    } else {
        EXPECT_EQ(outcomeOf([&] { return object.ifPresent<T>("k").value(); }), strict);
    }
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
        {R"({"k":42.5})", "corrupted", "42.5"},
        {R"({"k":9223372036854775807})", "9223372036854775807", "9.2233720368547758e+18"},
        {R"({"k":9223372036854775808})", "corrupted", "9.2233720368547758e+18"},
        {R"({"k":9223372036854775808.0})", "corrupted", "9.2233720368547758e+18"},
        {R"({"k":-9223372036854774784.0})", "-9223372036854774784", "-9.2233720368547748e+18"},
        {R"({"k":-9223372036854775809})", "corrupted", "-9.2233720368547758e+18"},
        {R"({"k":1e30})", "corrupted", "1e+30"},
        {R"({"k":true})", "mismatch", "mismatch", "true"},
        {R"({"k":"42"})", "mismatch", "mismatch", "mismatch", "42"},
        {R"({"k":[]})", "mismatch", "mismatch"},
        {R"({"K":1,"":2,"kk":3})", "no key", "no key", "no key", "no key"},
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

std::string objectOf(std::size_t count) {
    std::string text = "{\"x\":0";
    for (std::size_t index = 1; index < count; ++index) {
        text.append(",\"").append(std::to_string(index)).append("\":{}");
    }
    return text + "}";
}

// Members are looked for where the objects before had them.
TEST(JsonObject, FindsMembersWhateverTheObjectsBeforeHad) {
    const std::string longName(40, 'n');
    const std::string objects[] = {R"({"k":"first","z":"second"})",
                                   R"({"k":"first","z":"second"})",
                                   R"({"z":"second","k":"first"})",
                                   R"({"k":"first","k":"later"})",
                                   R"({"k":"first","k":"later","z":"second"})",
                                   R"({"a":{"k":1,"z":2,"a":3},"k":"first","z":"second"})",
                                   R"({"\u006b":"first","z":"second","kk":"","abcdefghijkl":""})",
                                   R"({"k":"first","Z":"second","kz":"","abcdefghijkm":""})",
                                   R"({"K":"first","z":"second","kz":"","abcdefghijkm":""})",
                                   "{}",
                                   R"({"k":"first",")" + longName + R"(":1,"z":"second"})",
                                   objectOf(32),
                                   objectOf(33)};
    std::string list;
    std::vector<std::string> expected;
    for (const std::string& before : objects) {
        for (const std::string& object : objects) {
            list.append(list.empty() ? "[" : ",").append(before).append(",").append(object);
            for (const std::string* text : {&before, &object}) {
                const bool hasFirst = text->find("first") < text->size() && text->find("\"K\"") > text->size();
                const bool hasSecond = text->find("second") < text->size() && text->find("\"Z\"") > text->size();
                expected.push_back((hasFirst ? "first" : "none") + std::string{hasSecond ? "second" : "none"});
            }
        }
    }
    for (const auto content : {JsonDocument::Content::ordinary, JsonDocument::Content::secret}) {
        const JsonDocument document{list + "]", content};
        std::vector<std::string> found;
        document.root().require<JsonArray>().forEach([&](const JsonValue& element) {
            const auto object = element.require<JsonObject>();
            const auto first = object.ifPresent<std::string>("k").value_or("none");
            if (const auto inner = object.find("a")) {
                EXPECT_EQ(inner->require<JsonObject>().require<std::int64_t>("a"), 3);
            }
            found.push_back(first + object.ifPresent<std::string>("z").value_or("none"));
            EXPECT_EQ(object.ifPresent<std::string>("k").value_or("none"), first);
        });
        EXPECT_EQ(found, expected);
    }
}

template <typename T>
std::function<void()> reading(const JsonObject& object, const char* key) {
    return [=] { (void)object.require<T>(key); };
}

TEST(JsonErrors, TellWhatAndWhere) {
    const JsonDocument document{R"({"list":[{"id":1},{"id":"x"}],"null":null,"real":42.5,"big":9223372036854775808,
        "flag":true,"text":"t","object":{"list":[[0],[0,null]]}})"};
    const auto root = document.root().require<JsonObject>();
    const auto idOf = [](const JsonValue& value) { return value.require<JsonObject>().require<std::int64_t>("id"); };
    const auto realsOf = [](const JsonValue& value) {
        return value.require<JsonArray>().map([](const JsonValue& element) { return element.require<double>(); });
    };
    const auto realsIn = [&](const JsonObject& object) { return object.nestedArray("list", realsOf); };
    struct Row {
        std::function<void()> read;
        Kind kind;
        const char* path;
        const char* description;
    };
    const Row rows[] = {
        {[&] { (void)root.nestedArray("list", idOf); }, Kind::typeMismatch, "list.Index 1.id",
         "Expected to decode Int but found a string/data instead."},
        {[&] { (void)root.nested("object", realsIn); }, Kind::valueNotFound, "object.list.Index 1.Index 1",
         "Expected Double value but found null instead."},
        {[&] { (void)root.nestedIfPresent("object", [](const JsonObject& o) { return o.require<bool>("id"); }); },
         Kind::keyNotFound, "object",
         R"(No value associated with key CodingKeys(stringValue: "id", intValue: nil) ("id").)"},
        {reading<JsonObject>(root, "null"), Kind::valueNotFound, "null",
         "Cannot get keyed decoding container -- found null value instead."},
        {reading<JsonArray>(root, "null"), Kind::valueNotFound, "null",
         "Cannot get unkeyed decoding container -- found null value instead."},
        {reading<std::int64_t>(root, "real"), Kind::dataCorrupted, "real",
         "Parsed JSON number <42.5> does not fit in Int."},
        {reading<std::int64_t>(root, "big"), Kind::dataCorrupted, "big",
         "Parsed JSON number <9223372036854775808> does not fit in Int."},
        {reading<std::string>(root, "flag"), Kind::typeMismatch, "flag",
         "Expected to decode String but found a number instead."},
        {reading<bool>(root, "object"), Kind::typeMismatch, "object",
         "Expected to decode Bool but found a dictionary instead."},
        {[&] { (void)root.ifPresent<JsonObject>("list"); }, Kind::typeMismatch, "list",
         "Expected to decode Dictionary<String, Any> but found an array instead."},
        {[&] { (void)document.root().require<JsonArray>(); }, Kind::typeMismatch, "",
         "Expected to decode Array<Any> but found a dictionary instead."},
    };
    for (const Row& row : rows) {
        const auto error = errorOf(row.read);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->debugDescription(), row.description);
        EXPECT_EQ(error->pathText(), row.path);
        EXPECT_EQ(error->kind(), row.kind);
        const bool isMissing = row.kind == Kind::keyNotFound || row.kind == Kind::valueNotFound;
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
    constexpr int count = 4;
    std::vector<std::jthread> threads;
    threads.reserve(count);
    for (int number = 0; number < count; ++number) {
        threads.emplace_back([&, number] {
            for (int round = 0; round < 100; ++round) {
                const JsonDocument mine{std::string{"[\""}.append(std::to_string(number)).append("\"]")};
                EXPECT_EQ(firstOf(mine), std::to_string(number));
                EXPECT_EQ(firstOf(outer), "outer");
            }
        });
    }
}

#ifdef __GLIBC__
TEST(JsonDocument, GivesItsMemoryBackAfterALongText) {
    const auto memoryInUse = [] {
        const auto info = ::mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    const auto text = "[" + repeated("1,", 3'000'000) + "1]";
    const auto before = memoryInUse();
    EXPECT_TRUE(isJson(text));
    EXPECT_LE(memoryInUse(), before + (std::size_t{16} << 20U));
}
#endif

}  // namespace
