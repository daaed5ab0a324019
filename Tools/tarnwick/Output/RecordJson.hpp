#pragma once

#include <Tarnwick_API/Records/Country.hpp>
#include <Tarnwick_API/Records/Device.hpp>
#include <Tarnwick_API/Records/Location.hpp>
#include <Tarnwick_API/Records/Server.hpp>
#include <Tarnwick_API/Records/Status.hpp>
#include <Tarnwick_API/Records/User.hpp>

#include "Commands/Command.hpp"

#include <optional>
#include <string>

namespace TarnwickClient {

/// The records as this program writes them for others: members without a value are null, secrets are left out.
[[nodiscard]] Json toJson(const Tarnwick_API::Location& location);
[[nodiscard]] Json toJson(const Tarnwick_API::User& user);
[[nodiscard]] Json toJson(const Tarnwick_API::Status& status);
[[nodiscard]] Json toJson(const Tarnwick_API::Device& device);
[[nodiscard]] Json toJson(const Tarnwick_API::Country& country);
[[nodiscard]] Json toJson(const Tarnwick_API::Server& server);

[[nodiscard]] std::string versionText(const Tarnwick_API::ClientVersion& version);
/// "2019-03-01T09:15:00Z".
[[nodiscard]] std::string timeText(std::chrono::sys_seconds time);
[[nodiscard]] const char* name(Tarnwick_API::DeviceType type) noexcept;
[[nodiscard]] const char* name(Tarnwick_API::LocationType type) noexcept;

}  // namespace TarnwickClient
