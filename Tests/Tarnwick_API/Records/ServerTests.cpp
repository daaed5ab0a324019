#include <Tarnwick_API/Records/Server.hpp>
#include <Tarnwick_API/Records/ServerProtocol.hpp>

#include "JsonSupport.hpp"

#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace Tarnwick_API {
namespace {

const std::string shortServer =
    R"({"id":"1234","name":"no-1","displayName":"Oslo 1","ip":"203.0.113.1","ipv6":"2001:db8::1",
    "Max_Users":"150","totalusers":"42","countrycode":"NO","distance":"12.5","latitude":"59.9","longitude":"10.7",
    "city":"Oslo"})";
const std::string configuration = R"({"id":3,"name":"UDP","type":"openvpn","dns1":"a","dns2":"b","dns3":"c",
    "clientdata":"d","preshared_secret":"never","port":"1194","portrange":"1-9"})";
const std::string longServer =
    R"({"id":1234,"name":"no-1","displayName":"Oslo 1","dnsname":"no-1.example","ip":"203.0.113.1",
    "ipv6":null,"location":{"countrycode":"NO","language":"nb","city":"Oslo"},
    "statistics":{"totalusers":42,"maxusers":150},"configurations":[)" +
    configuration + "]}";

TEST(ServerShort, ReadsItsNumbersAsTexts) {
    const auto server = decoded<ServerShort>(shortServer);
    EXPECT_EQ(server.id, 1234);
    EXPECT_EQ(server.apiName, "no-1");
    EXPECT_EQ(server.ipv6, "2001:db8::1");
    EXPECT_EQ(server.description(), "Name: Oslo 1, IP: 203.0.113.1, Location: NO");
    EXPECT_EQ(decoded<ServerShort>(with(shortServer, "displayName", "x")).description(),
              "Name: no-1, IP: 203.0.113.1, Location: NO");
    for (const auto& [number, key] :
         {std::pair{"\"12.5\"", "distance"}, {"\"59.9\"", "latitude"}, {"\"10.7\"", "longitude"}}) {
        EXPECT_EQ(outcomeOf<ServerShort>(with(shortServer, number, "\"unknown\"")), "ok") << key;
        EXPECT_EQ(outcomeOf<ServerShort>(with(shortServer, number, "1.5")), std::string{"mismatch "} + key);
        EXPECT_EQ(outcomeOf<ServerShort>(with(shortServer, number, "null")), std::string{"no value "} + key);
    }
    EXPECT_FALSE(decoded<ServerShort>(with(shortServer, "\"12.5\"", "\"unknown\"")).distance);
    for (const auto& [number, key] :
         {std::pair{"\"1234\"", "id"}, {"\"150\"", "Max_Users"}, {"\"42\"", "totalusers"}}) {
        EXPECT_EQ(outcomeOf<ServerShort>(with(shortServer, number, "42")), std::string{"mismatch "} + key);
        EXPECT_EQ(outcomeOf<ServerShort>(with(shortServer, number, "\"many\"")),
                  "The value cannot be converted to an Int");
    }
    for (const auto* key : {"\"name", "\"ip\"", "\"Max_Users", "\"totalusers", "\"countrycode", "\"distance"}) {
        EXPECT_EQ(outcomeOf<ServerShort>(with(shortServer, key, "\"a key\":0," + std::string{"\"x"} + (key + 1))),
                  "no key")
            << key;
    }
}

TEST(Server, IsMadeOfAShortOne) {
    const auto server = decodeServer(shortServer, ServerJsonKind::short_);
    EXPECT_EQ(server.id, 1234);
    EXPECT_FALSE(server.cached);
    EXPECT_EQ(server.name, "Oslo 1");
    EXPECT_EQ(server.ip, "203.0.113.1");
    EXPECT_EQ(server.hostname, "");
    EXPECT_EQ(server.location.countrycode, "NO");
    EXPECT_EQ(server.location.language, "");
    EXPECT_EQ(server.location.city, "Oslo");
    EXPECT_EQ(server.location.distance, 12.5);
    EXPECT_EQ(server.location.latitude, 59.9);
    EXPECT_EQ(server.location.longitude, 10.7);
    EXPECT_EQ(server.statistics.currentUsers, 42);
    EXPECT_EQ(server.statistics.maxUsers, 150);
    EXPECT_TRUE(server.configurations.empty());
    EXPECT_FALSE(server.type);
    EXPECT_EQ(decodeServer(with(shortServer, "displayName", "x"), ServerJsonKind::short_).name, "no-1");
}

TEST(Server, IsMadeOfALongOne) {
    const auto server = decodeServer(longServer, ServerJsonKind::long_);
    EXPECT_EQ(server.id, 1234);
    EXPECT_EQ(server.description(), "Name: Oslo 1, IP: 203.0.113.1, Host: no-1.example, Location: NO");
    EXPECT_EQ(decoded<ServerLong>(longServer).description(), server.description());
    EXPECT_EQ(server.location.language, "nb");
    EXPECT_EQ(server.location.city, "Oslo");
    EXPECT_FALSE(server.location.distance || server.location.latitude || server.location.longitude || server.type);
    EXPECT_EQ(server.statistics.currentUsers, 42);
    EXPECT_EQ(server.statistics.maxUsers, 150);
    ASSERT_EQ(server.configurations.size(), 1U);
    const Server::Configuration& udp = server.configurations[0];
    EXPECT_EQ(udp.id, 3);
    EXPECT_EQ(udp.name + udp.type + udp.dns1 + udp.dns2 + udp.dns3, "UDPopenvpnabc");
    EXPECT_EQ(udp.clientdata, "d");
    EXPECT_FALSE(udp.presharedSecret);
    EXPECT_EQ(udp.port, "1194");
    EXPECT_EQ(udp.portrange, "1-9");
    EXPECT_TRUE(decoded<ServerLong>(with(longServer, configuration, "")).configurations.empty());
    const std::pair<std::string, const char*> failures[] = {
        {with(longServer, "1234", "\"1234\""), "mismatch id"},
        {with(longServer, "dnsname", "hostname"), "no key"},
        {with(longServer, "\"nb\"", "null"), "no value location.language"},
        {with(longServer, "150", "150.5"), "corrupted statistics.maxusers"},
        {with(longServer, "\"configurations\"", "\"x\""), "no key"},
        {with(longServer, configuration, configuration + ",null"), "no value configurations.Index 1"},
        {with(longServer, configuration, configuration + "," + with(configuration, "\"b\"", "2")),
         "mismatch configurations.Index 1.dns2"},
        {with(longServer, "\"1194\"", "1194"), "mismatch configurations.Index 0.port"},
    };
    for (const auto& [failing, outcome] : failures) {
        EXPECT_EQ(outcomeOf<ServerLong>(failing), outcome) << failing;
    }
}

TEST(Server, ListsKeepTheirOrderAndFailAsAWhole) {
    const auto list = [](const std::string& first, const std::string& second) {
        return "[" + first + "," + second + "]";
    };
    const auto servers = decodeServers(list(with(shortServer, "1234", "2"), shortServer), ServerJsonKind::short_);
    ASSERT_EQ(servers.size(), 2U);
    EXPECT_EQ(servers[0].id, 2);
    EXPECT_EQ(servers[1].id, 1234);
    EXPECT_EQ(decodeServers(list(longServer, longServer), ServerJsonKind::long_).size(), 2U);
    EXPECT_TRUE(decodeServers("[]", ServerJsonKind::short_).empty());
    EXPECT_THROW((void)decodeServers(shortServer, ServerJsonKind::short_), Platform::DecodingError);
    EXPECT_THROW((void)decodeServers(list(shortServer, with(shortServer, "150", "x")), ServerJsonKind::short_),
                 JsonDecodeError);
    try {
        (void)decodeServers(list(shortServer, longServer), ServerJsonKind::short_);
        FAIL();
    } catch (const Platform::DecodingError& error) {
        EXPECT_EQ(error.pathText(), "Index 1.id");
    }
}

TEST(ServerProtocol, IsMatchedExactly) {
    for (const ServerProtocol protocol : {ServerProtocol::l2tp, ServerProtocol::ipsec}) {
        EXPECT_EQ(fromRawValue<ServerProtocol>(rawValue(protocol)), protocol);
    }
    EXPECT_EQ(fromRawValue<ServerProtocol>("IPSEC"), ServerProtocol::ipsec);
    for (const auto* text : {"ipsec", "IPSEC ", ""}) {
        EXPECT_FALSE(fromRawValue<ServerProtocol>(text)) << text;
    }
}

}  // namespace
}  // namespace Tarnwick_API
