#include <Tarnwick_API/Records/ApiJsonDecoder.hpp>
#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/OAuthToken.hpp>
#include <Tarnwick_API/Records/User.hpp>

#include "JsonSupport.hpp"

#include <chrono>
#include <string>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

const std::string location =
    R"({"ip":"203.0.113.9","countryname":"Norge","countrycode":"NO","city":"Oslo","latitude":59.9,"longitude":10})";
const std::string user =
    R"({"id":7,"user_name":"bob","active":1,"user_email":"b@example.test","location":)" + location + "}";

TEST(Location, ReadsStrictly) {
    const auto full = decoded<Location>(location);
    EXPECT_EQ(full.ip + full.country + full.countryCode, "203.0.113.9NorgeNO");
    EXPECT_EQ(full.city, "Oslo");
    EXPECT_EQ(full.latitude, 59.9);
    EXPECT_EQ(full.longitude, 10.0);
    const auto bare = decoded<Location>(R"({"ip":"a","countryname":"b","countrycode":"c","city":null})");
    EXPECT_FALSE(bare.city || bare.latitude || bare.longitude);
    EXPECT_EQ(outcomeOf<Location>(with(location, "59.9", R"("59.9")")), "mismatch latitude");
    EXPECT_EQ(outcomeOf<Location>(with(location, "\"Oslo\"", "1")), "mismatch city");
    EXPECT_EQ(outcomeOf<Location>(with(location, "countrycode", "countryCode")), "no key");
}

TEST(User, ReadsAllButItsLocationStrictly) {
    const auto bob = decoded<User>(user);
    EXPECT_EQ(bob.id, 7);
    EXPECT_FALSE(bob.cached);
    EXPECT_EQ(bob.username, "bob");
    EXPECT_EQ(bob.email, "b@example.test");
    EXPECT_TRUE(bob.active);
    EXPECT_EQ(bob.location.value().countryCode, "NO");

    EXPECT_EQ(outcomeOf<User>(with(user, "7", "\"7\"")), "mismatch id");
    EXPECT_EQ(outcomeOf<User>(with(user, "7", "7.5")), "corrupted id");
    EXPECT_EQ(outcomeOf<User>(with(user, "user_name", "username")), "no key");
    EXPECT_EQ(outcomeOf<User>(with(user, "\"b@example.test\"", "1")), "mismatch user_email");
    EXPECT_FALSE(decoded<User>(with(user, "\"b@example.test\"", "null")).email);
    for (const auto* flag : {"0", "2", "-1"}) {
        EXPECT_FALSE(decoded<User>(with(user, "\"active\":1", std::string{"\"active\":"} + flag)).active) << flag;
    }
    for (const auto* flag : {"true", "\"1\""}) {
        EXPECT_EQ(outcomeOf<User>(with(user, "\"active\":1", std::string{"\"active\":"} + flag)), "mismatch active");
    }
    for (const std::string& bad : {std::string{"null"}, std::string{"[]"}, std::string{"\"Oslo\""},
                                   with(location, "countrycode", "x"), with(location, "59.9", "\"59.9\"")}) {
        EXPECT_FALSE(decoded<User>(with(user, location, bad)).location) << bad;
    }
    EXPECT_FALSE(decoded<User>(R"({"id":1,"user_name":"","active":1})").location);
}

TEST(OAuthToken, HasAShapeForEachVersion) {
    const std::string first = R"({"oauth_token":"t","oauth_token_secret":"s"})";
    const std::string second = R"({"id":"i","token":"t","tokenSecret":"s"})";
    const ApiJsonDecoder byDefault;
    const ApiJsonDecoder v2{ApiVersion::v2};
    EXPECT_EQ(byDefault.version(), ApiVersion::v1);
    const Platform::JsonDecoder plain;
    const Platform::JsonDecoder* const ofVersion1[] = {&plain, &byDefault};
    for (const auto* decoder : ofVersion1) {
        const auto token = decoded<OAuthToken>(first, *decoder);
        EXPECT_EQ(token.token + token.secret, "ts");
        EXPECT_FALSE(token.id);
        EXPECT_EQ(outcomeOf<OAuthToken>(second, *decoder), "no key");
        EXPECT_EQ(outcomeOf<OAuthToken>(R"({"oauth_token":"t"})", *decoder), "no key");
    }
    const auto token = decoded<OAuthToken>(second, v2);
    EXPECT_EQ(token.id, "i");
    EXPECT_EQ(token.token + token.secret, "ts");
    EXPECT_EQ(outcomeOf<OAuthToken>(first, v2), "no key");
    EXPECT_EQ(outcomeOf<OAuthToken>(with(second, "\"i\"", "1"), v2), "mismatch id");
    EXPECT_EQ(outcomeOf<OAuthToken>(with(second, "tokenSecret", "secret"), v2), "no key");
}

TEST(Device, ReadsItsIdAsTextAndItsConsumer) {
    const std::string json = R"({"id":"17","token":"t","machine_name":"desk","created":"2019-03-01 09:15:00",
        "consumer":{"name":"Client","device_type":"win"}})";
    const auto device = decoded<Device>(json);
    EXPECT_EQ(device.id, 17);
    EXPECT_FALSE(device.cached);
    EXPECT_EQ(device.token, "t");
    EXPECT_EQ(device.name, "Client");
    EXPECT_EQ(device.type, DeviceType::windows);
    EXPECT_EQ(device.deviceName, "desk");
    EXPECT_EQ(device.created, std::chrono::sys_seconds{std::chrono::seconds{1551431700}});

    const auto bare = decoded<Device>(R"({"id":"1","token":"t","consumer":{"device_type":"x"}})");
    EXPECT_FALSE(bare.name || bare.deviceName || bare.created);
    EXPECT_FALSE(decoded<Device>(with(json, "2019-03-01 09", "yesterday 09")).created);
    const std::pair<std::string, const char*> failures[] = {
        {with(json, "\"17\"", "17"), "mismatch id"},
        {with(json, "\"17\"", "\"x\""), "The value cannot be converted to an Int"},
        {with(json, "\"t\"", "null"), "no value token"},
        {with(json, "\"2019-03-01 09:15:00\"", "0"), "mismatch created"},
        {with(json, "consumer", "consumers"), "no key"},
        {with(json, R"({"name":"Client","device_type":"win"})", "[]"), "mismatch consumer"},
        {with(json, "\"Client\"", "1"), "mismatch consumer.name"},
        {with(json, "device_type", "type"), "no key consumer"},
    };
    for (const auto& [failing, outcome] : failures) {
        EXPECT_EQ(outcomeOf<Device>(failing), outcome) << failing;
    }
    const std::pair<const char*, DeviceType> types[] = {
        {"mac", DeviceType::mac},         {"ios", DeviceType::ios},   {"win", DeviceType::windows},
        {"android", DeviceType::android}, {"Mac", DeviceType::other}, {"windows", DeviceType::other},
        {"", DeviceType::other},
    };
    for (const auto& [text, type] : types) {
        EXPECT_EQ(deviceTypeFrom(text), type) << text;
    }
}

}  // namespace
}  // namespace Tarnwick_API
