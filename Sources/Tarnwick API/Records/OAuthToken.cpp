#include <Tarnwick_API/Records/OAuthToken.hpp>

#include <Tarnwick_API/Records/ApiJsonDecoder.hpp>

namespace Tarnwick_API {

OAuthToken OAuthToken::decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder) {
    const auto* apiDecoder = dynamic_cast<const ApiJsonDecoder*>(&decoder);
    OAuthToken token;
    if (apiDecoder != nullptr && apiDecoder->version() == ApiVersion::v2) {
        token.id = object.require<std::string>("id");
        token.token = object.require<std::string>("token");
        token.secret = object.require<std::string>("tokenSecret");
    } else {
        token.token = object.require<std::string>("oauth_token");
        token.secret = object.require<std::string>("oauth_token_secret");
    }
    return token;
}

}  // namespace Tarnwick_API
