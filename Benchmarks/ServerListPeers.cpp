#include "ServerListPeers.hpp"

#include "NumberTexts.hpp"

#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>

namespace Benchmarks {

namespace {

using Tarnwick_API::Server;

/// `text(key)` gives a required text and throws without one; `optionalText(key)` gives none for a missing one or null.
template <typename Text, typename OptionalText>
Server serverFrom(Text text, OptionalText optionalText) {
    Server server;
    server.id = integerFrom(text("id"));
    server.name = text("name");
    if (const auto displayName = optionalText("displayName")) {
        server.name = *displayName;
    }
    server.ip = text("ip");
    static_cast<void>(optionalText("ipv6"));
    server.statistics.maxUsers = integerFrom(text("Max_Users"));
    server.statistics.currentUsers = integerFrom(text("totalusers"));
    server.location.countrycode = text("countrycode");
    server.location.distance = realFrom(text("distance"));
    server.location.latitude = realFrom(text("latitude"));
    server.location.longitude = realFrom(text("longitude"));
    if (const auto city = optionalText("city")) {
        server.location.city.emplace(*city);
    }
    return server;
}

}  // namespace

std::vector<Server> serversByRapidJson(const Tarnwick_API::Platform::Bytes& body) {
    rapidjson::Document document;
    document.Parse<rapidjson::kParseFullPrecisionFlag | rapidjson::kParseValidateEncodingFlag>(body.data(),
                                                                                               body.size());
    std::vector<Server> servers;
    if (document.HasParseError() || !document.IsArray()) {
        return servers;
    }
    servers.reserve(document.Size());
    for (const auto& element : document.GetArray()) {
        const auto find = [&](std::string_view key) -> const rapidjson::Value* {
            const auto member =
                element.FindMember(rapidjson::StringRef(key.data(), static_cast<rapidjson::SizeType>(key.size())));
            return member == element.MemberEnd() ? nullptr : &member->value;
        };
        servers.push_back(serverFrom(
            [&](std::string_view key) -> std::string_view {
                const auto* const member = find(key);
                if (member == nullptr || !member->IsString()) {
                    throw std::runtime_error{"no text"};
                }
                return {member->GetString(), member->GetStringLength()};
            },
            [&](std::string_view key) -> std::optional<std::string_view> {
                const auto* const member = find(key);
                if (member == nullptr || member->IsNull()) {
                    return std::nullopt;
                }
                return std::string_view{member->GetString(), member->GetStringLength()};
            }));
    }
    return servers;
}

std::vector<Server> serversByNlohmann(const Tarnwick_API::Platform::Bytes& body) {
    const auto list = nlohmann::json::parse(body);
    std::vector<Server> servers;
    servers.reserve(list.size());
    for (const auto& element : list) {
        servers.push_back(serverFrom(
            [&](const char* key) -> std::string_view { return element.at(key).get_ref<const std::string&>(); },
            [&](const char* key) -> std::optional<std::string_view> {
                const auto member = element.find(key);
                if (member == element.end() || member->is_null()) {
                    return std::nullopt;
                }
                return std::string_view{member->get_ref<const std::string&>()};
            }));
    }
    return servers;
}

}  // namespace Benchmarks
