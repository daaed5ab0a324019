#include <Tarnwick_API/Records/ApiItem.hpp>
#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/FavoriteCountry.hpp>
#include <Tarnwick_API/Records/OAuthToken.hpp>

#include "JsonSupport.hpp"

#include <string>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

const std::string device = R"({"id":"17","token":"t","consumer":{"device_type":"mac"}})";

TEST(ApiItem, CreatesARecordOrNone) {
    EXPECT_EQ(ApiItem::create<Device>(device).value().id, 17);
    // Any decodable record, of any conforming one; always in the shape of version 1.
    EXPECT_EQ(Device::create<OAuthToken>(R"({"oauth_token":"t","oauth_token_secret":"s"})").value().token, "t");
    EXPECT_FALSE(ApiItem::create<OAuthToken>(R"({"id":"i","token":"t","tokenSecret":"s"})"));
    for (const std::string& bytes : {"[" + device + "]", std::string{}, std::string{"null"}, device + "x",
                                     with(device, "17", "x"), with(device, "\"t\"", "1"), with(device, "t", "\xFF")}) {
        EXPECT_FALSE(ApiItem::create<Device>(bytes)) << bytes;
    }
}

TEST(ApiItem, CreatesAListOrAnEmptyOne) {
    EXPECT_EQ(ApiItem::createArray<Device>("[" + device + "," + device + "]").size(), 2U);
    for (const std::string& bytes : {device, std::string{"[]"}, "[" + device + ",{}]", "[null," + device + "]",
                                     "[" + device + "," + with(device, "17", "x") + "]", "[" + device}) {
        EXPECT_TRUE(ApiItem::createArray<Device>(bytes).empty()) << bytes;
    }
}

}  // namespace
}  // namespace Tarnwick_API
