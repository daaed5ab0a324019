#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <string_view>

namespace Tarnwick_API {

/// An operation was ended before its answer, by a `Platform::StopToken` or a deadline that the application gave it.
/// What the service made of the request is unknown.
class TARNWICK_API_EXPORT CancellationError {
public:
    explicit constexpr CancellationError(Platform::StopReason reason) noexcept : reason_{reason} {}

    [[nodiscard]] constexpr Platform::StopReason reason() const noexcept { return reason_; }

    /// For users; English.
    [[nodiscard]] std::string_view localizedDescription() const noexcept;

    friend constexpr bool operator==(const CancellationError&, const CancellationError&) = default;

private:
    Platform::StopReason reason_;
};

}  // namespace Tarnwick_API
