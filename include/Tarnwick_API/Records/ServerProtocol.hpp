#pragma once

#include <concepts>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// A tunnel protocol.
enum class ServerProtocol { l2tp, ipsec };

/// "L2TP" or "IPSEC".
[[nodiscard]] constexpr std::string_view rawValue(ServerProtocol protocol) noexcept {
    switch (protocol) {
        case ServerProtocol::l2tp:
            return "L2TP";
        case ServerProtocol::ipsec:
            break;
    }
    return "IPSEC";
}

/// The protocol of exactly that name; none for any other text, the same in other letter case included.
template <std::same_as<ServerProtocol> Enumeration>
[[nodiscard]] constexpr std::optional<Enumeration> fromRawValue(std::string_view text) noexcept {
    for (const ServerProtocol protocol : {ServerProtocol::l2tp, ServerProtocol::ipsec}) {
        if (text == rawValue(protocol)) {
            return protocol;
        }
    }
    return std::nullopt;
}

}  // namespace Tarnwick_API
