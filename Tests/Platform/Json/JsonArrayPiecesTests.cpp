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
    return mapArrayText<std::int64_t>(
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
            EXPECT_EQ(numbersIn(text), expected);
            JsonArrayPieces pieces{text};
            EXPECT_LT(pieces.next().value().size(), 20000) << "it was not cut at all";
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
    // Longer than the place of a probable cut is looked for: it is cut behind this.
    const auto great = R"([{"n":1,"x":")" + std::string(600'000, 'x') + R"("},)";
    const std::string rows[] = {
        great + "]",
        great + std::string(300'000, ' ') + R"(,{"n":2}])",
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

TEST(LongArrays, NameThePlaceOfAnErrorAfterOneReadingInBoundedRoom) {
    auto oneBad = longArray(",", "");
    oneBad.replace(oneBad.find(R"({"n":5000)"), 9, R"({"m":5000)");
    std::string ones = "[1";
    std::string empties = "[{}";
    for (int count = 0; count < 1'000'000; ++count) {
        ones += ",1";
        empties += ",{}";
    }
    constexpr std::size_t recordSize = 400;
    const auto mostEmpties = 24 * (empties.size() + 1) / recordSize;
    using Kind = DecodingError::Kind;
    struct Row {
        std::string text;
        Kind kind;
        std::string path;
        std::size_t reads;
        std::size_t room;
    };
    const Row rows[] = {
        {oneBad, Kind::keyNotFound, "Index 5000", 5001, 21000},
        {oneBad + "x", Kind::dataCorrupted, "", 5001, 21000},
        {ones + "]", Kind::typeMismatch, "Index 0", 1, 1024},
        {ones, Kind::dataCorrupted, "", 1, 1024},
        {empties + "]", Kind::dataCorrupted, "Index " + std::to_string(mostEmpties), mostEmpties, mostEmpties},
        {std::string(600'000, ' ') + "null", Kind::valueNotFound, "", 0, 0},
    };
    for (const Row& row : rows) {
        std::size_t reads = 0;
        std::size_t room = 0;
        try {
            readArrayText(
                row.text, recordSize, [&](const std::size_t count) { room = count; },
                [&](const JsonValue& element) {
                    ++reads;
                    const auto object = element.require<JsonObject>();
                    if (object.find("text")) {
                        static_cast<void>(object.require<std::int64_t>("n"));
                    }
                });
            ADD_FAILURE() << row.path;
        } catch (const DecodingError& error) {
            EXPECT_EQ(error.kind(), row.kind);
            EXPECT_EQ(error.pathText(), row.path);
        }
        EXPECT_EQ(reads, row.reads) << row.path;
        EXPECT_LE(room, row.room) << row.path;
    }
    EXPECT_EQ(numbersIn("[" + std::string(600'000, ' ') + "]").size(), 0);
    ones += "]";
    EXPECT_LT(JsonArrayPieces{ones}.next().value().size(), 300'000) << "nothing told it where to cut";
}

}  // namespace
}  // namespace Tarnwick_API::Platform
