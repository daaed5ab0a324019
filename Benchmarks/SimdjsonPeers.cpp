#include <Records/DateText.hpp>

#include "NumberTexts.hpp"
#include "ServerListPeers.hpp"

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include <simdjson.h>

namespace Benchmarks {

namespace {

using Tarnwick_API::Device;
using Tarnwick_API::Server;

template <std::size_t count>
using Names = std::array<std::string_view, count>;

template <std::size_t count>
std::size_t slotOf(std::string_view name, const Names<count>& names) {
    return static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin());
}

/// Reads a value that nobody asked for, as it may be no JSON.
void check(simdjson::ondemand::value value) {
    switch (value.type()) {
        case simdjson::ondemand::json_type::array:
            for (auto element : value.get_array()) {
                check(element.value());
            }
            break;
        case simdjson::ondemand::json_type::object:
            for (auto field : value.get_object()) {
                static_cast<void>(field.unescaped_key().value());
                check(field.value().value());
            }
            break;
        case simdjson::ondemand::json_type::number:
            static_cast<void>(value.get_number().value());
            break;
        case simdjson::ondemand::json_type::string:
            static_cast<void>(value.get_string().value());
            break;
        case simdjson::ondemand::json_type::boolean:
            static_cast<void>(value.get_bool().value());
            break;
        case simdjson::ondemand::json_type::null:
            if (!value.is_null()) {
                throw std::runtime_error{"no JSON"};
            }
            break;
    }
}

std::string_view textOf(simdjson::ondemand::value& value) {
    return value.get_string();
}

std::optional<std::string_view> textIfPresent(simdjson::ondemand::value& value) {
    return value.is_null() ? std::nullopt : std::optional<std::string_view>{textOf(value)};
}

void readShortServer(simdjson::ondemand::object object, Server& server) {
    enum Slot { id, name, displayName, ip, ipv6, places, users, country, distance, latitude, longitude, city, count };
    static constexpr Names<14> names{"id",        "name",       "displayName",           "ip",       "ipv6",
                                     "Max_Users", "totalusers", "countrycode",           "distance", "latitude",
                                     "longitude", "city",       "scheduled_maintenance", "tags"};
    std::bitset<names.size()> seen;
    bool hasDisplayName = false;
    std::size_t expected = 0;
    for (auto field : object) {
        const auto raw = field.key().value();
        const bool isExpected = expected < names.size() && raw.unsafe_is_equal(names[expected]);
        const auto slot = isExpected ? expected : slotOf(field.unescaped_key(), names);
        expected = slot + 1;
        simdjson::ondemand::value value = field.value();
        const bool isFirst = slot < names.size() && !seen[slot];
        if (isFirst) {
            seen.set(slot);
        }
        switch (isFirst ? slot : std::size_t{count}) {
            case id:
                server.id = integerFrom(textOf(value));
                break;
            case name:
                if (const auto text = textOf(value); !hasDisplayName) {
                    server.name = text;
                }
                break;
            case displayName:
                if (const auto text = textIfPresent(value)) {
                    server.name = *text;
                    hasDisplayName = true;
                }
                break;
            case ip:
                server.ip = textOf(value);
                break;
            case ipv6:
                static_cast<void>(textIfPresent(value));
                break;
            case places:
                server.statistics.maxUsers = integerFrom(textOf(value));
                break;
            case users:
                server.statistics.currentUsers = integerFrom(textOf(value));
                break;
            case country:
                server.location.countrycode = textOf(value);
                break;
            case distance:
                server.location.distance = realFrom(textOf(value));
                break;
            case latitude:
                server.location.latitude = realFrom(textOf(value));
                break;
            case longitude:
                server.location.longitude = realFrom(textOf(value));
                break;
            case city:
                if (const auto text = textIfPresent(value)) {
                    server.location.city.emplace(*text);
                }
                break;
            default:
                check(value);
        }
    }
    for (const auto slot : {id, name, ip, places, users, country, distance, latitude, longitude}) {
        if (!seen[slot]) {
            throw std::runtime_error{"a member is missing"};
        }
    }
}

/// The members of an object, whatever their order; of several of one name the first.
template <std::size_t count>
class Members {
public:
    Members(const simdjson::dom::object& object, const Names<count>& names) {
        std::size_t expected = 0;
        const auto end = object.end();
        for (auto field = object.begin(); field != end; ++field) {
            const auto name = field.key();
            const auto slot = expected < count && name == names[expected] ? expected : slotOf(name, names);
            expected = slot + 1;
            if (slot < count && !seen_[slot]) {
                seen_.set(slot);
                values_[slot] = field.value();
            }
        }
    }

    template <typename T>
    [[nodiscard]] T require(std::size_t slot) const {
        if (!seen_[slot]) {
            throw std::runtime_error{"a member is missing"};
        }
        return values_[slot];
    }
    [[nodiscard]] std::string_view text(std::size_t slot) const { return require<std::string_view>(slot); }
    [[nodiscard]] std::optional<std::string_view> textIfPresent(std::size_t slot) const {
        return seen_[slot] && !values_[slot].is_null() ? std::optional<std::string_view>{text(slot)} : std::nullopt;
    }
    void takeIfPresent(std::size_t slot, std::optional<std::string>& target) const {
        if (const auto text = textIfPresent(slot)) {
            target.emplace(*text);
        }
    }

private:
    std::array<simdjson::dom::element, count> values_;
    std::bitset<count> seen_;
};

void readConfiguration(const simdjson::dom::object& object, Server::Configuration& configuration) {
    enum Slot { id, name, type, dns1, dns2, dns3, clientdata, secret, port, portrange };
    static constexpr Names<11> names{
        "id", "name", "type", "dns1", "dns2", "dns3", "clientdata", "preshared_secret", "port", "portrange", "weight"};
    const Members members{object, names};
    configuration.id = members.require<std::int64_t>(id);
    configuration.name = members.text(name);
    configuration.type = members.text(type);
    configuration.dns1 = members.text(dns1);
    configuration.dns2 = members.text(dns2);
    configuration.dns3 = members.text(dns3);
    members.takeIfPresent(clientdata, configuration.clientdata);
    members.takeIfPresent(port, configuration.port);
    members.takeIfPresent(portrange, configuration.portrange);
}

void readLongServer(const simdjson::dom::object& object, Server& server) {
    enum Slot { id, name, displayName, hostname, ip, ipv6, location, statistics, configurations };
    static constexpr Names<10> names{"id",   "name",     "displayName", "dnsname",        "ip",
                                     "ipv6", "location", "statistics",  "configurations", "online"};
    static constexpr Names<5> locationNames{"countrycode", "countryname", "language", "city", "timezone"};
    static constexpr Names<3> statisticsNames{"totalusers", "maxusers", "load"};
    const Members members{object, names};
    server.id = members.require<std::int64_t>(id);
    server.name = members.textIfPresent(displayName).value_or(members.text(name));
    server.hostname = members.text(hostname);
    server.ip = members.text(ip);
    static_cast<void>(members.textIfPresent(ipv6));
    const Members place{members.require<simdjson::dom::object>(location), locationNames};
    server.location.countrycode = place.text(0);
    server.location.language = place.text(2);
    place.takeIfPresent(3, server.location.city);
    const Members load{members.require<simdjson::dom::object>(statistics), statisticsNames};
    server.statistics = {load.require<std::int64_t>(0), load.require<std::int64_t>(1)};
    const auto list = members.require<simdjson::dom::array>(configurations);
    server.configurations.reserve(list.size());
    for (const simdjson::dom::element element : list) {
        readConfiguration(element, server.configurations.emplace_back());
    }
}

void readDevice(const simdjson::dom::object& object, Device& device) {
    enum Slot { id, token, machineName, created, consumer };
    static constexpr Names<6> names{"id", "token", "machine_name", "created", "consumer", "extra"};
    static constexpr Names<3> consumerNames{"name", "device_type", "x"};
    const Members members{object, names};
    device.id = integerFrom(members.text(id));
    device.token = members.text(token);
    members.takeIfPresent(machineName, device.deviceName);
    if (const auto text = members.textIfPresent(created)) {
        device.created = Tarnwick_API::parse12HourDate(*text);
    }
    const Members client{members.require<simdjson::dom::object>(consumer), consumerNames};
    client.takeIfPresent(0, device.name);
    device.type = Tarnwick_API::deviceTypeFrom(client.text(1));
}

template <typename Record>
std::vector<Record> recordsFrom(const Tarnwick_API::Platform::Bytes& body,
                                void (*read)(const simdjson::dom::object&, Record&)) {
    static simdjson::dom::parser parser;
    const simdjson::dom::array list = parser.parse(body.data(), body.size(), false);
    std::vector<Record> records;
    records.reserve(list.size());
    for (const simdjson::dom::element element : list) {
        read(element, records.emplace_back());
    }
    return records;
}

}  // namespace

std::vector<Server> serversBySimdjson(const Tarnwick_API::Platform::Bytes& body) {
    static simdjson::ondemand::parser parser;
    constexpr std::size_t usualLength = 256;
    std::vector<Server> servers;
    servers.reserve(body.size() / usualLength);
    simdjson::ondemand::document document = parser.iterate(body.data(), body.size(), body.capacity());
    for (simdjson::ondemand::object object : document.get_array()) {
        readShortServer(object, servers.emplace_back());
    }
    if (document.current_location().error() != simdjson::OUT_OF_BOUNDS) {
        throw std::runtime_error{"text behind the list"};
    }
    return servers;
}

std::vector<Server> longServersBySimdjson(const Tarnwick_API::Platform::Bytes& body) {
    return recordsFrom<Server>(body, &readLongServer);
}

std::vector<Device> devicesBySimdjson(const Tarnwick_API::Platform::Bytes& body) {
    return recordsFrom<Device>(body, &readDevice);
}

}  // namespace Benchmarks
