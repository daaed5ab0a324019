#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// A universally unique identifier of 16 bytes.
class Uuid {
public:
    /// A fresh random one (version 4) from the system's random source.
    [[nodiscard]] static Uuid random();

    /// Reads the 36-character form 8-4-4-4-12 in either letter case; anything else gives none.
    [[nodiscard]] static std::optional<Uuid> fromString(std::string_view text);

    /// The 36-character form, upper case.
    [[nodiscard]] std::string uuidString() const;

    friend bool operator==(const Uuid&, const Uuid&) = default;
    friend std::strong_ordering operator<=>(const Uuid& one, const Uuid& other) noexcept;

private:
    explicit Uuid(const std::array<std::uint8_t, 16>& bytes) : bytes_{bytes} {}

    std::array<std::uint8_t, 16> bytes_;
};

}  // namespace Tarnwick_API::Platform
