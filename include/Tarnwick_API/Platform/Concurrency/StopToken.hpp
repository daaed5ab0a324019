#pragma once

#include <Tarnwick_API/Export.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <version>

#ifdef __cpp_lib_jthread
#include <stop_token>
#endif

namespace Tarnwick_API::Platform {

/// Why something is to stop.
enum class StopReason {
    stopped,         ///< somebody asked for it
    deadlinePassed,  ///< its time was up
};

/// Tells whether, and when, what it was given to shall stop. A copy is the same token; one made of nothing never stops.
/// The standard library's own is missing from libc++ before version 18, and so from most Macs.
/// Thread: any.
class TARNWICK_API_EXPORT StopToken {
    struct TARNWICK_API_NO_EXPORT State;

public:
    /// What is called with the reason.
    using Callback = std::function<void(StopReason)>;

    /// Keeps a callback registered; destroying it ends that, but does not wait for a call that is under way.
    class Registration {
    public:
        Registration() = default;

    private:
        friend class StopToken;
        explicit Registration(std::shared_ptr<void> entry) : entry_{std::move(entry)} {}
        std::shared_ptr<void> entry_;
    };

    StopToken() = default;

#ifdef __cpp_lib_jthread
    /// Stops when `token` does.
    [[nodiscard]] static StopToken from(const std::stop_token& token);
#endif

    [[nodiscard]] bool canStop() const noexcept {
        return state_ != nullptr;
    }
    [[nodiscard]] bool isStopped() const {
        return reason().has_value();
    }
    /// None as long as nothing is to stop.
    [[nodiscard]] std::optional<StopReason> reason() const;

    /// Calls `callback` once, on the thread that stops, or inside this call when that has been before. It had
    /// better not throw: the others are called all the same, then the first exception goes on to who stops.
    [[nodiscard]] Registration onStop(Callback callback) const;

private:
    friend class StopSource;
    explicit StopToken(std::shared_ptr<State> state) noexcept : state_{std::move(state)} {
    }
    void keep(std::shared_ptr<void> companion) const;

    std::shared_ptr<State> state_;
};

/// Stops what its tokens were given to. A copy is the same source. Dropped, it stops nothing.
/// Thread: any.
class TARNWICK_API_EXPORT StopSource {
public:
    StopSource();

    [[nodiscard]] const StopToken& token() const noexcept { return token_; }

    /// Once; the first reason counts. Returns after the callbacks have.
    void stop(StopReason reason = StopReason::stopped) const;

private:
    friend class StopToken;
    explicit StopSource(StopToken token) noexcept : token_{std::move(token)} {}

    StopToken token_;
};

#ifdef __cpp_lib_jthread
inline StopToken StopToken::from(const std::stop_token& token) {
    const StopSource source;
    // The token keeps the callback, so the callback must not keep the token.
    auto stop = [weak = std::weak_ptr<State>{source.token().state_}] {
        if (auto state = weak.lock()) {
            StopSource{StopToken{std::move(state)}}.stop();
        }
    };
    source.token().keep(std::make_shared<std::stop_callback<decltype(stop)>>(token, std::move(stop)));
    return source.token();
}
#endif

}  // namespace Tarnwick_API::Platform
