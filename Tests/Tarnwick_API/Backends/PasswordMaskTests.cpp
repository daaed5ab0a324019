#include <string>

#include "PasswordMask.hpp"

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

TEST(PasswordMask, CoversWhatTheCurlRenderingOfABodyHolds) {
    struct Row {
        std::string text;
        std::string expected;
    };
    const Row rows[] = {
        {R"({\"a\":\"b\",\"password\":\"secret\",\"z\":\"y\"})",
         R"({\"a\":\"b\",\"password\":\"OBFUSCATED\",\"z\":\"y\"})"},
        {R"(\"x_auth_password\":\"p\/q\\\"r\\\\\",\"u\":\"v\")", R"(\"x_auth_password\":\"OBFUSCATED\",\"u\":\"v\")"},
        {R"(\"PassWord\":\"\",\"u\":1)", R"(\"PassWord\":\"OBFUSCATED\",\"u\":1)"},
        {R"(\"new_password\":\"a\",\"old_password\":\"b\",\"os\":\"mac\",\"v\":\"1\")",
         R"(\"new_password\":\"OBFUSCATED\",\"v\":\"1\")"},
        {R"(\"password\":\"a\\\",\\\"b\",\"u\":\"v\")", R"(\"password\":\"OBFUSCATED\",\"u\":\"v\")"},
        {"\\\"password\\\":\\\"one\\\",\\\"a\\\"\n\\\"password\\\":\\\"two\\\",\\\"b\\\"\n",
         "\\\"password\\\":\\\"OBFUSCATED\\\",\\\"a\\\"\n\\\"password\\\":\\\"OBFUSCATED\\\",\\\"b\\\"\n"},
        {"\\\"password\\\":\\\"gr\xC3\xBC\xC3\x9F\xE2\x80\xA8\\\",\\\"a\\\"",
         "\\\"password\\\":\\\"OBFUSCATED\\\",\\\"a\\\""},
        {R"({\"password\":\"last\"})", R"({\"password\":\"last\"})"},
        {"\\\"password\\\":\\\"a\n\\\",\\\"b", "\\\"password\\\":\\\"a\n\\\",\\\"b"},
        {R"(\"password\":123,\"a\":\"b\")", R"(\"password\":123,\"a\":\"b\")"},
        {R"(\",\"password\":\")", R"(\",\"password\":\")"},
        {"password=plain&a=b", "password=plain&a=b"},
        {"", ""},
    };
    // Wherever it stands: a text is searched in pieces.
    constexpr std::size_t morePlacesThanInAPiece = 100;
    for (const Row& row : rows) {
        for (std::string before; before.size() < morePlacesThanInAPiece; before += 's') {
            EXPECT_EQ(obfuscateLoginString(before + row.text), before + row.expected);
        }
    }
}

TEST(PasswordMask, StaysLinearOnOneHugeLine) {
    std::string hostile;
    while (hostile.size() < 4U << 20U) {
        hostile += R"(password\":\"password\":\)";
    }
    EXPECT_EQ(obfuscateLoginString(hostile), hostile);
}

}  // namespace
}  // namespace Tarnwick_API
