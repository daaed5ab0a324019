#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <optional>
#include <string>

namespace TarnwickClient {

/// What the keychain has for a service, without anything secret. The account is no user name but the access token, so
/// it stays here.
struct KeptItem {
    enum class Kind { none, token, placeholder };

    /// `success` also when there is no item; otherwise why nothing is known.
    Tarnwick_API::Platform::KeychainStatus status = Tarnwick_API::Platform::KeychainStatus::success;
    Kind kind = Kind::none;
    std::optional<Tarnwick_API::Platform::Bytes> reference = std::nullopt;
    bool requiresUserInteraction = false;
};

[[nodiscard]] KeptItem keptItem(const std::string& service);

}  // namespace TarnwickClient
