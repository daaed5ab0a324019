#include "OAuthHeader.hpp"

#include <Platform/Text/Wiping.hpp>

#include <cstddef>

namespace Tarnwick_API {

namespace {

constexpr std::string_view prefix =
    R"(OAuth oauth_version="1.0", oauth_signature_method="PLAINTEXT", oauth_consumer_key=")";
constexpr std::string_view tokenOpener = R"(,oauth_token=")";
constexpr std::string_view signatureOpenerAfterToken = R"(" ,oauth_signature=")";
constexpr std::string_view signatureOpenerWithoutToken = R"(, oauth_signature=")";
constexpr std::string_view escapedAmpersand = "%26";
static_assert(prefix.size() == 83 && tokenOpener.size() == 14 && signatureOpenerAfterToken.size() == 20 &&
              signatureOpenerWithoutToken.size() == 19);

}  // namespace

std::string oauthHeader(std::string_view consumerKey, std::string_view consumerSecret,
                        const std::optional<OAuthToken>& token) {
    const bool usable = token && !token->token.empty() && !token->secret.empty();
    // Where a text grows, its old memory has to be overwritten: most headers fit into this.
    constexpr std::size_t usualSize = 400;
    Platform::WipingText header;
    header.reserve(usualSize);
    header.append(prefix).append(consumerKey).append("\"");
    if (usable) {
        header.append(tokenOpener).append(token->token).append(signatureOpenerAfterToken);
    } else {
        header.append(signatureOpenerWithoutToken);
    }
    header.append(consumerSecret).append(escapedAmpersand);
    if (usable) {
        header.append(token->secret);
    }
    return std::string{header.append("\"")};
}

}  // namespace Tarnwick_API
