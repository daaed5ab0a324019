#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <cstdint>
#include <optional>
#include <string>

namespace Tarnwick_API {

/// One way of connecting to a server.
struct TARNWICK_API_EXPORT ServerConfiguration {
    /// Any number of 64 bits.
    std::int64_t id = 0;
    std::string name;
    std::string type;
    std::string dns1;
    std::string dns2;
    std::string dns3;
    std::optional<std::string> clientdata;
    /// Never read from an answer, though the service sends it: none unless the application sets it.
    std::optional<std::string> presharedSecret;
    std::optional<std::string> port;
    std::optional<std::string> portrange;

    [[nodiscard]] static ServerConfiguration decode(const Platform::JsonObject& object,
                                                    const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
