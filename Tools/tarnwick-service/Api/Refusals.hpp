#pragma once

#include <string>
#include <string_view>

namespace TarnwickService {

/// The request is not what the service's clients send.
[[noreturn]] void refuseMalformed(const std::string& text);

/// The application or the session may not do this. Clients tell these refusals apart by the text.
[[noreturn]] void refuseSession(std::string_view text);

constexpr std::string_view notLoggedIn = "Not logged in";
constexpr std::string_view invalidConsumerRights = "Invalid consumer access rights";
constexpr std::string_view invalidConsumerKey = "Invalid consumer key";
constexpr std::string_view consumerKeyMissing = "Consumer key missing or invalid";

}  // namespace TarnwickService
