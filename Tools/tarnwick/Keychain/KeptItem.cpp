#include "Keychain/KeptItem.hpp"

#include <Tarnwick_API/Storage/Keychain.hpp>

#include <utility>
#include <variant>

namespace TarnwickClient {

using Tarnwick_API::Keychain;
using Tarnwick_API::LoginData;
using Tarnwick_API::Platform::KeychainStatus;

KeptItem keptItem(const std::string& service) {
    auto answer = Keychain::store()->copyMatching({.service = service},
                                                  {.attributes = true, .persistentReference = true, .limitOne = true});
    if (answer.status != KeychainStatus::success) {
        return {.status = answer.status == KeychainStatus::itemNotFound ? KeychainStatus::success : answer.status};
    }
    auto* const found = std::get_if<Tarnwick_API::Platform::KeychainDictionary>(&answer.value);
    if (found == nullptr) {
        return {.status = KeychainStatus::unknownFormat};
    }
    // The secret is not asked for: the account alone tells the placeholder from an access token.
    const auto isPlaceholder = found->account == LoginData::signedOutPlaceholder().username;
    return {.kind = isPlaceholder ? KeptItem::Kind::placeholder : KeptItem::Kind::token,
            .reference = std::move(found->persistentReference),
            .requiresUserInteraction = found->comment == Keychain::requiresUserInteractionValue()};
}

}  // namespace TarnwickClient
