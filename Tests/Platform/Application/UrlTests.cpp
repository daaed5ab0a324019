#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <optional>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace Tarnwick_API::Platform {
namespace {

using namespace std::string_view_literals;

Url url(std::string_view text) {
    return Url::fromString(text).value();
}

TEST(Url, TextThatIsOneIsKeptAsWrittenAndTakenApart) {
    struct Row {
        std::string_view text;
        std::string_view scheme;
        std::string_view host;
        std::string_view port;
    };
    const Row rows[] = {
        {"https://h.example/vb", "https", "h.example", ""},
        {"HTTPS://H.example:8443/vb", "HTTPS", "H.example", "8443"},
        {"https:///vb", "https", "", ""},
        {"https://", "https", "", ""},
        {"h.example/vb", "", "", ""},
        {"//h.example/vb", "", "h.example", ""},
        {"/a:b//c", "", "", ""},
        {"1h://x", "", "", ""},
        {":x", "", "", ""},
        {"https://h:99999/vb", "https", "h", "99999"},
        {"https://h:/vb", "https", "h", ""},
        {"https://h?x", "https", "h", ""},
        {"https://h?u@x:1", "https", "h", ""},
        {"https://h/@x:1", "https", "h", ""},
        {"https://user:p%40ss@h:1/", "https", "h", "1"},
        {"https://a@b@c/", "https", "c", ""},
        {"https://[2001:db8::7]/vb", "https", "2001:db8::7", ""},
        {"https://u@[::1]:8443/vb", "https", "::1", "8443"},
        {"https://[::1", "https", "", ""},
        {"https://[::1]x:1/", "https", "", ""},
        {"https://::1/", "https", "", ":1"},
        {"%4a-_.!~*'()$&+,/:;=?@#%AF", "", "", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        const auto url = Url::fromString(row.text);
        ASSERT_TRUE(url);
        EXPECT_EQ(url->absoluteString(), row.text);
        EXPECT_EQ(url->scheme(), row.scheme);
        EXPECT_EQ(url->host(), row.host);
        EXPECT_EQ(url->port(), row.port);
    }
}

TEST(Url, TextWithAnIllegalCharacterIsNone) {
    for (const auto text : {"", "https://h/%zz", "https://h/%", "https://h/%4", "a#b#c"}) {
        EXPECT_FALSE(Url::fromString(text)) << text;
    }
    for (const char character : " |\"<>\\^`{}\n\0\x7F\x80\xFF"sv) {
        EXPECT_FALSE(Url::fromString(std::string{"https://h/a"} + character + "b")) << character;
    }
}

TEST(Url, AppendsAPathComponent) {
    struct Row {
        std::string_view base;
        std::string_view component;
        std::string_view result;
    };
    const Row rows[] = {
        {"https://h.example/vb", "users/me", "https://h.example/vb/users/me"},
        {"https://h.example/vb/", "users", "https://h.example/vb/users"},
        {"https://h.example/vb", "/users", "https://h.example/vb/users"},
        {"https://h.example/vb/", "/users", "https://h.example/vb//users"},
        {"https://h.example/vb", "users/", "https://h.example/vb/users/"},
        {"https://h.example/vb", "", "https://h.example/vb/"},
        {"https://", "vb", "https:///vb"},
        {"//h", "x", "//h/x"},
        {"https://h/vb?q=/#f/", "x", "https://h/vb/x?q=/#f/"},
        {"https://h/vb#f?", "x", "https://h/vb/x#f?"},
        {"h:/v", "access_tokens/a/b", "h:/v/access_tokens/a/b"},
        {"h:/v", "~_-.!*'()$,a+b&c=d:e@f", "h:/v/~_-.!*'()$,a+b&c=d:e@f"},
        {"h:/v", "a%b", "h:/v/a%25b"},
        {"h:/v", "a?b#c;d e", "h:/v/a%3Fb%23c%3Bd%20e"},
        {"h:/v", "../x", "h:/v/../x"},
        {"h:/v", "[x]{y}", "h:/v/%5Bx%5D%7By%7D"},
        {"h:/v", "\u00E9\\\"", "h:/v/%C3%A9%5C%22"},
        {"h:/v", "\n\0\x7F\xFF"sv, "h:/v/%0A%00%7F%FF"},
    };
    for (const auto& row : rows) {
        const auto result = url(row.base).appendingPathComponent(row.component);
        EXPECT_EQ(result.absoluteString(), row.result);
        EXPECT_EQ(Url::fromString(row.result), result);
    }
}

TEST(Url, AppendsAQuery) {
    struct Row {
        std::string_view base;
        std::string_view query;
        std::string_view result;
    };
    const Row rows[] = {
        {"https://h/p", "a=1", "https://h/p?a=1"},           {"https://h/p?x=y", "a=1", "https://h/p?x=y&a=1"},
        {"https://h/p?", "a=1", "https://h/p?&a=1"},         {"https://h/p#f", "a=1", "https://h/p?a=1#f"},
        {"https://h/p?x#f?", "a=1", "https://h/p?x&a=1#f?"}, {"https://h/p#f", "", "https://h/p#f"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(url(row.base).appendingQuery(row.query).absoluteString(), row.result);
    }
}

}  // namespace
}  // namespace Tarnwick_API::Platform
