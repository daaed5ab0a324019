#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Json/JsonDecoder.hpp>

#include <compare>
#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// A version of a client application. The build takes part in no comparison. The numbers are any of 64 bits, negative
/// ones ("7.-1") included.
struct TARNWICK_API_EXPORT ClientVersion {
    std::int64_t major = 0;
    std::int64_t minor = 0;
    std::int64_t revision = 0;
    std::optional<std::int64_t> build;

    ClientVersion() = default;
    ClientVersion(std::int64_t majorNumber, std::int64_t minorNumber, std::int64_t revisionNumber,
                  std::optional<std::int64_t> buildNumber = std::nullopt) noexcept
        : major{majorNumber}, minor{minorNumber}, revision{revisionNumber}, build{buildNumber} {}
    /// Reads "7.1.2.345" or "7.1.2b", where the b marks a beta. What is missing or no number counts as 0, the build
    /// too.
    explicit ClientVersion(std::string_view text) noexcept;

    /// The running application's version, from the main bundle's "CFBundleVersion"; none when the bundle has no such
    /// text.
    [[nodiscard]] static std::optional<ClientVersion> bundleVersion();

    /// Whether this version satisfies the minimum.
    [[nodiscard]] bool isValid(const ClientVersion& minimum) const noexcept { return *this >= minimum; }

    [[nodiscard]] static ClientVersion decode(const Platform::JsonObject& object, const Platform::JsonDecoder& decoder);

    friend TARNWICK_API_EXPORT std::weak_ordering operator<=>(const ClientVersion& a, const ClientVersion& b) noexcept;
    friend bool operator==(const ClientVersion& a, const ClientVersion& b) noexcept { return std::is_eq(a <=> b); }
};

}  // namespace Tarnwick_API
