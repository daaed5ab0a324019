#pragma once

#include <Tarnwick_API/Records/OAuthToken.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API {

/// The "Authorization" header's value: OAuth 1.0, PLAINTEXT. A token counts only with both its texts non-empty.
/// Nothing is escaped, and the separators differ with and without a token: the service compares the text as it is.
[[nodiscard]] std::string oauthHeader(std::string_view consumerKey, std::string_view consumerSecret,
                                      const std::optional<OAuthToken>& token);

}  // namespace Tarnwick_API
