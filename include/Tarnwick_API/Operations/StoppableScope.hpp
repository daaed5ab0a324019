#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

namespace Tarnwick_API {

/// Lets the requests that are made inside it, on this thread, be stopped. An `Operation` makes one around its start; a
/// backend of an application's own can ask for the token with `take`, and then must complete with `CancellationError`
/// once it stops.
class TARNWICK_API_EXPORT StoppableScope {
public:
    explicit StoppableScope(Platform::StopToken token) noexcept;
    StoppableScope(const StoppableScope&) = delete;
    StoppableScope& operator=(const StoppableScope&) = delete;
    ~StoppableScope();

    /// The token of the innermost scope; one that never stops outside of any.
    [[nodiscard]] static Platform::StopToken take();

    /// The same, without a promise to complete.
    [[nodiscard]] static Platform::StopToken current();

    /// Whether somebody has taken it.
    [[nodiscard]] bool isTaken() const noexcept { return isTaken_; }

private:
    Platform::StopToken token_;
    StoppableScope* outer_;
    bool isTaken_ = false;
};

}  // namespace Tarnwick_API
