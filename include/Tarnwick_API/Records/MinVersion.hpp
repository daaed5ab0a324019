#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>
#include <Tarnwick_API/Records/ClientVersion.hpp>

namespace Tarnwick_API {

/// The oldest client versions that the service accepts.
struct TARNWICK_API_EXPORT MinVersion {
    ClientVersion mac;

    [[nodiscard]] static MinVersion decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);
};

}  // namespace Tarnwick_API
