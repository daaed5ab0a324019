#include <Platform/Json/JsonArrayPieces.hpp>

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

/// More elements than one piece holds, each "{"n":INDEX,...}", with what is most likely to mislead the cutting.
std::string longArray(std::string_view separator, std::string_view extra, std::size_t count = 20000) {
    std::string text = " [ ";
    for (std::size_t index = 0; index < count; ++index) {
        text.append(index > 0 ? separator : "");
        text.append(R"({"n":)").append(std::to_string(index)).append(extra).append(R"(,"text":"},{\"n\":1},{ \\"})");
    }
    return text + " ] \n";
}

std::vector<std::int64_t> numbersIn(const std::string& text) {
    return mapArrayText(
        text, [](const JsonValue& element) { return element.require<JsonObject>().require<std::int64_t>("n"); });
}

TEST(LongArrays, AreReadAsIfWhole) {
    std::vector<std::int64_t> expected(20000);
    std::iota(expected.begin(), expected.end(), 0);
    const std::string_view extras[] = {"", R"(,"list":[{"n":1},{"n":2}, {"n":3}],"a":{"n":{}})",
                                       R"(,"big":123456789012345678901234567890)"};
    for (const auto extra : extras) {
        for (const auto* const separator : {",", " ,\n "}) {
            const auto text = longArray(separator, extra);
            ASSERT_TRUE(JsonArrayPieces::isWorthwhile(text));
            EXPECT_EQ(numbersIn(text), expected);
            JsonArrayPieces pieces{text};
            std::size_t count = 0;
            while (pieces.next()) {
                ++count;
            }
            EXPECT_TRUE(pieces.isComplete() && count > 1) << "it was not cut at all";
        }
    }
    EXPECT_EQ(numbersIn("\xEF\xBB\xBF" + longArray(",", "")), expected);
}

TEST(LongArrays, AreRefusedForWhatIsWrongAnywhere) {
    const auto good = longArray(",", "");
    // Between two elements: inside a text the second quote has a backslash.
    const auto middle = good.find(R"("},{"n":)", good.size() / 2) + 1;
    ASSERT_NE(middle, std::string::npos + 1);
    const auto withInTheMiddle = [&](std::string_view replacement) {
        auto text = good;
        return text.replace(middle, 3, replacement);
    };
    const std::string rows[] = {
        good + "x",
        good + "[]",
        good.substr(0, good.size() - 4),
        good.substr(0, good.find_last_of(']')) + ",]",
        withInTheMiddle("},,{"),
        withInTheMiddle("}{"),
        withInTheMiddle("}],[{"),
        withInTheMiddle("},\xFF{"),
        withInTheMiddle("},nul,{"),
        "{\"a\":" + good + "}",
    };
    for (const auto& text : rows) {
        EXPECT_THROW(static_cast<void>(numbersIn(text)), DecodingError) << text.substr(middle - 20, 60);
    }
}

TEST(LongArrays, NameThePlaceOfAnError) {
    auto text = longArray(",", "");
    text.replace(text.find(R"({"n":15000)"), 10, R"({"m":15000)");
    try {
        static_cast<void>(numbersIn(text));
        FAIL();
    } catch (const DecodingError& error) {
        EXPECT_EQ(error.kind(), DecodingError::Kind::keyNotFound);
        EXPECT_EQ(error.codingPath(), (DecodingError::Path{std::size_t{15000}}));
    }
}

}  // namespace
}  // namespace Tarnwick_API::Platform
