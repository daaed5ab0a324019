#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/ApiVersion.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

namespace Tarnwick_API {

/// A decoder that knows which generation of the API an answer comes from. Records whose shape depends on it ask for it;
/// for any other decoder they read the shape of version 1.
class TARNWICK_API_EXPORT ApiJsonDecoder : public Platform::JsonDecoder {
public:
    explicit ApiJsonDecoder(ApiVersion version = ApiVersion::v1) noexcept : version_{version} {}

    [[nodiscard]] ApiVersion version() const noexcept { return version_; }

private:
    ApiVersion version_;
};

}  // namespace Tarnwick_API
