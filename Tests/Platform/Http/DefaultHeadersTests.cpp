#include <Tarnwick_API/Platform/Application/Locale.hpp>
#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Requests/DefaultHeaders.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace Tarnwick_API::Platform;

TEST(DefaultHeaders, WeighUpToSixLanguages) {
    EXPECT_EQ(acceptLanguage({}), "");
    EXPECT_EQ(acceptLanguage({"en-GB", "de-DE"}), "en-GB;q=1.0, de-DE;q=0.9");
    EXPECT_EQ(acceptLanguage({"a", "b", "c", "d", "e", "f", "g"}),
              "a;q=1.0, b;q=0.9, c;q=0.8, d;q=0.7, e;q=0.6, f;q=0.5");
}

TEST(DefaultHeaders, NameTheApplication) {
    const Bundle::Dictionary full{{"CFBundleExecutable", "Demo"},
                                  {"CFBundleShortVersionString", "7.1"},
                                  {"CFBundleIdentifier", "com.example.demo"},
                                  {"CFBundleVersion", "7100"}};
    EXPECT_EQ(userAgent(Bundle{full}, "Linux 6.1.0", "lib/1"),
              "Demo/7.1 (com.example.demo; build:7100; Linux 6.1.0) lib/1");
    EXPECT_EQ(userAgent(Bundle{{{"CFBundleExecutable", "De\r\nmo"}}}, "OS X 1.2.3", "lib/1"),
              "De  mo/Unknown (Unknown; build:Unknown; OS X 1.2.3) lib/1");
    EXPECT_EQ(userAgent(Bundle{}, "Linux 6.1.0", "lib/1"), "lib/1");
}

TEST(DefaultHeaders, CutReleasesToThreeNumbers) {
    EXPECT_EQ(threeNumbers("6.1.0-18-amd64"), "6.1.0");
    EXPECT_EQ(threeNumbers("5.15.153.1-microsoft"), "5.15.153");
    EXPECT_EQ(threeNumbers("14.2"), "14.2.0");
    EXPECT_EQ(threeNumbers(""), "0.0.0");
}

TEST(DefaultHeaders, AreThree) {
    using testing::ElementsAre;
    using testing::MatchesRegex;
    using testing::Pair;
    Locale::setIdentifierLookup([] { return std::string{"de_DE.UTF-8"}; });
    Bundle::setMain(Bundle{{{"CFBundleExecutable", "Demo"}}});
    EXPECT_THAT(defaultHttpHeaders(),
                ElementsAre(Pair("Accept-Encoding", "gzip;q=1.0, compress;q=0.5"),
                            Pair("Accept-Language", testing::StartsWith("de-DE;q=1.0")),
                            Pair("User-Agent",
                                 MatchesRegex("Demo/Unknown \\(Unknown; build:Unknown; (Linux|OS X) "
                                              "[0-9]+\\.[0-9]+\\.[0-9]+\\) libcurl/[0-9]+\\.[0-9]+\\.[0-9]+.*"))));
    Locale::setIdentifierLookup({});
    Bundle::setMain({});
}

}  // namespace
