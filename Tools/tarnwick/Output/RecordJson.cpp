#include "Output/RecordJson.hpp"

#include <array>
#include <chrono>
#include <cstdio>

namespace TarnwickClient {

using Tarnwick_API::Country;
using Tarnwick_API::Device;
using Tarnwick_API::DeviceType;
using Tarnwick_API::Location;
using Tarnwick_API::LocationType;
using Tarnwick_API::Server;
using Tarnwick_API::Status;
using Tarnwick_API::User;

namespace {

template <typename T>
Json orNull(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

/// Lists leave out some texts, which then are empty.
Json textOrNull(const std::string& text) {
    return text.empty() ? Json(nullptr) : Json(text);
}

Json typeOrNull(const std::optional<LocationType>& type) {
    return type ? Json(name(*type)) : Json(nullptr);
}

}  // namespace

Json toJson(const Location& location) {
    return {{"ip", location.ip},
            {"country", location.country},
            {"countryCode", location.countryCode},
            {"city", orNull(location.city)},
            {"latitude", orNull(location.latitude)},
            {"longitude", orNull(location.longitude)}};
}

Json toJson(const User& user) {
    return {{"id", user.id},
            {"username", user.username},
            {"email", orNull(user.email)},
            {"active", user.active},
            {"location", user.location ? toJson(*user.location) : Json(nullptr)}};
}

Json toJson(const Status& status) {
    return {{"ip", status.ip},
            {"minimumClientVersion", versionText(status.minVersion.mac)},
            {"updateIntervalSeconds", status.statusUpdateInterval},
            {"apiVersion", orNull(status.apiVersion)},
            {"location", status.location ? toJson(*status.location) : Json(nullptr)}};
}

Json toJson(const Device& device) {
    return {{"id", device.id},
            {"deviceName", orNull(device.deviceName)},
            {"application", orNull(device.name)},
            {"type", name(device.type)},
            {"created", device.created ? Json(timeText(*device.created)) : Json(nullptr)}};
}

Json toJson(const Country& country) {
    return {{"countryCode", country.countryCode},
            {"country", country.localizedCountryName()},
            {"full", country.full},
            {"currentUsers", orNull(country.currentUsers)},
            {"maxUsers", orNull(country.maxUsers)},
            {"distance", orNull(country.distance)},
            {"serviceId", orNull(country.serviceId)},
            {"serviceName", orNull(country.serviceName)},
            {"type", typeOrNull(country.type)}};
}

Json toJson(const Server& server) {
    Json configurations = Json::array();
    for (const auto& configuration : server.configurations) {
        Json dns = Json::array();
        for (const auto* address : {&configuration.dns1, &configuration.dns2, &configuration.dns3}) {
            if (!address->empty()) {
                dns.push_back(*address);
            }
        }
        configurations.push_back({{"id", configuration.id},
                                  {"name", configuration.name},
                                  {"type", configuration.type},
                                  {"dns", std::move(dns)},
                                  {"clientData", orNull(configuration.clientdata)},
                                  {"port", orNull(configuration.port)},
                                  {"portRange", orNull(configuration.portrange)}});
    }
    return {{"id", server.id},
            {"name", server.name},
            {"ip", server.ip},
            {"hostname", textOrNull(server.hostname)},
            {"countryCode", server.location.countrycode},
            {"country", server.localizedCountryName()},
            {"city", orNull(server.location.city)},
            {"language", textOrNull(server.location.language)},
            {"distance", orNull(server.location.distance)},
            {"latitude", orNull(server.location.latitude)},
            {"longitude", orNull(server.location.longitude)},
            {"currentUsers", server.statistics.currentUsers},
            {"maxUsers", server.statistics.maxUsers},
            {"type", typeOrNull(server.type)},
            {"configurations", std::move(configurations)}};
}

std::string versionText(const Tarnwick_API::ClientVersion& version) {
    return std::to_string(version.major) + "." + std::to_string(version.minor) + "." + std::to_string(version.revision);
}

std::string timeText(std::chrono::sys_seconds time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss clock{time - day};
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text.data();
}

const char* name(DeviceType type) noexcept {
    switch (type) {
        case DeviceType::mac:
            return "mac";
        case DeviceType::ios:
            return "ios";
        case DeviceType::windows:
            return "windows";
        case DeviceType::android:
            return "android";
        case DeviceType::other:
            break;
    }
    return "other";
}

const char* name(LocationType type) noexcept {
    switch (type) {
        case LocationType::general:
            return "general";
        case LocationType::downloading:
            return "downloading";
        case LocationType::streaming:
            return "streaming";
        case LocationType::privateIp:
            return "privateIp";
    }
    return "unknown";
}

}  // namespace TarnwickClient
