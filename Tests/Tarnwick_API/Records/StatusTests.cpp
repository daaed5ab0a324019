#include <Tarnwick_API/Platform/Application/Bundle.hpp>
#include <Tarnwick_API/Records/Status.hpp>

#include "JsonSupport.hpp"

#include <cmath>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

const std::string status = R"({"realip":"203.0.113.9","required_client_versions":{"mac_7":"7.1.2"},
    "status_update_interval":300,"phpapi":"2.1",
    "location":{"ip":"203.0.113.9","countryname":"Norge","countrycode":"NO"}})";

TEST(Status, ReadsWhatItNeedsStrictly) {
    const auto full = decoded<Status>(status);
    EXPECT_EQ(full.id, 0);
    EXPECT_EQ(full.ip, "203.0.113.9");
    EXPECT_EQ(full.minVersion.mac, ClientVersion(7, 1, 2));
    EXPECT_EQ(full.statusUpdateInterval, 300);
    EXPECT_EQ(full.apiVersion, "2.1");
    EXPECT_EQ(full.location.value().countryCode, "NO");
    EXPECT_FALSE(decoded<Status>(with(status, "\"2.1\"", "2")).apiVersion);
    EXPECT_FALSE(decoded<Status>(with(status, "\"location\"", "\"x\"")).location);

    const std::pair<const char*, double> intervals[] = {{"300.5", 300.5},    {"\"300\"", 300}, {"\"soon\"", 1200},
                                                        {"null", 1200},      {"true", 1200},   {"[]", 1200},
                                                        {"\"1e400\"", 1200}, {"-1", -1}};
    for (const auto& [text, seconds] : intervals) {
        EXPECT_EQ(decoded<Status>(with(status, "300", text)).statusUpdateInterval, seconds) << text;
    }
    EXPECT_EQ(decoded<Status>(with(status, "status_update_interval", "x")).statusUpdateInterval, 1200);

    const std::pair<std::string, const char*> failures[] = {
        {with(status, "realip", "ip"), "no key"},
        {with(status, "required_client_versions", "x"), "no key"},
        {with(status, "mac_7", "mac"), "no key required_client_versions"},
        {with(status, "\"7.1.2\"", "7"), "mismatch required_client_versions.mac_7"},
        {with(status, "countrycode", "x"), "no key location"},
        {with(status, R"({"ip":"203.0.113.9","countryname":"Norge","countrycode":"NO"})", "[]"), "mismatch location"},
    };
    for (const auto& [failing, outcome] : failures) {
        EXPECT_EQ(outcomeOf<Status>(failing), outcome) << failing;
    }
}

TEST(ClientVersion, IsReadFromText) {
    struct Row {
        const char* text;
        std::int64_t major, minor, revision, build;
    };
    const Row rows[] = {
        {"7.1.2b", 7, 1, 2, 0},     {"bb7.1.2.3bb", 7, 1, 2, 3},
        {"7.1", 7, 1, 0, 0},        {"7.1.2.345", 7, 1, 2, 345},
        {"", 0, 0, 0, 0},           {"b", 0, 0, 0, 0},
        {"7.x.2", 7, 0, 2, 0},      {"7..2", 7, 0, 2, 0},
        {"7.1.2.3.4.", 7, 1, 2, 3}, {" 7.1b.2", 0, 0, 2, 0},
        {"...", 0, 0, 0, 0},        {"99999999999999999999.+2.-3", 0, 2, -3, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text);
        const ClientVersion version{row.text};
        EXPECT_EQ(version, ClientVersion(row.major, row.minor, row.revision));
        EXPECT_EQ(version.build, row.build);
    }
}

TEST(ClientVersion, IsReadFromAnObject) {
    const std::string json = R"({"major":7,"minor":1,"revision":2,"build":9})";
    EXPECT_EQ(decoded<ClientVersion>(json), ClientVersion(7, 1, 2));
    EXPECT_EQ(decoded<ClientVersion>(json).build, 9);
    EXPECT_FALSE(decoded<ClientVersion>(with(json, "build", "x")).build);
    EXPECT_EQ(outcomeOf<ClientVersion>(with(json, "9", "\"9\"")), "mismatch build");
    EXPECT_EQ(outcomeOf<ClientVersion>(with(json, "minor", "x")), "no key");
}

TEST(ClientVersion, ComparesWithoutItsBuild) {
    const ClientVersion ascending[] = {{-1, 9, 9}, {6, 9, 9}, {7, 0, 9}, {7, 1, 9}, {7, 2, 0}, {7, 10, 0}};
    for (const ClientVersion& a : ascending) {
        for (const ClientVersion& b : ascending) {
            EXPECT_EQ(a < b, &a < &b);
            EXPECT_EQ(a == b, &a == &b);
            EXPECT_EQ(a.isValid(b), &a >= &b);
        }
    }
    EXPECT_EQ(ClientVersion(7, 1, 2, 5), ClientVersion(7, 1, 2, 9));
    EXPECT_TRUE(ClientVersion(7, 1, 2, 5).isValid(ClientVersion(7, 1, 2, 9)));
}

TEST(ClientVersion, OfTheApplicationComesFromItsBundle) {
    EXPECT_FALSE(ClientVersion::bundleVersion());
    Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleVersion", std::string{"7.2.1b"}}}});
    EXPECT_EQ(ClientVersion::bundleVersion(), ClientVersion(7, 2, 1));
    Platform::Bundle::setMain(Platform::Bundle{{{"CFBundleVersion", std::int64_t{7}}}});
    EXPECT_FALSE(ClientVersion::bundleVersion());
    Platform::Bundle::setMain({});
}

}  // namespace
}  // namespace Tarnwick_API
