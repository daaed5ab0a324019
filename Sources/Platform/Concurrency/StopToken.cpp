#include <Tarnwick_API/Platform/Concurrency/StopToken.hpp>

#include <algorithm>
#include <exception>
#include <mutex>
#include <vector>

namespace Tarnwick_API::Platform {

struct StopToken::State {
    std::mutex mutex;
    std::optional<StopReason> reason;
    /// Each lives as long as its registration.
    std::vector<std::weak_ptr<Callback>> callbacks;
    std::shared_ptr<void> companion;
};

std::optional<StopReason> StopToken::reason() const {
    if (!state_) {
        return std::nullopt;
    }
    const std::lock_guard lock{state_->mutex};
    return state_->reason;
}

StopToken::Registration StopToken::onStop(Callback callback) const {
    if (!state_) {
        return {};
    }
    auto entry = std::make_shared<Callback>(std::move(callback));
    std::optional<StopReason> reason;
    {
        const std::lock_guard lock{state_->mutex};
        reason = state_->reason;
        if (!reason) {
            std::erase_if(state_->callbacks, [](const auto& other) { return other.expired(); });
            state_->callbacks.push_back(entry);
        }
    }
    if (reason) {
        (*entry)(*reason);
    }
    return Registration{std::move(entry)};
}

void StopToken::keep(std::shared_ptr<void> companion) const {
    const std::lock_guard lock{state_->mutex};
    state_->companion = std::move(companion);
}

StopSource::StopSource() : token_{std::make_shared<StopToken::State>()} {
}

void StopSource::stop(StopReason reason) const {
    std::vector<std::weak_ptr<StopToken::Callback>> callbacks;
    {
        const std::lock_guard lock{token_.state_->mutex};
        if (token_.state_->reason) {
            return;
        }
        token_.state_->reason = reason;
        callbacks.swap(token_.state_->callbacks);
    }
    std::exception_ptr thrown;
    for (const auto& weak : callbacks) {
        try {
            if (const auto callback = weak.lock()) {
                (*callback)(reason);
            }
        } catch (...) {
            thrown = thrown ? thrown : std::current_exception();
        }
    }
    if (thrown) {
        std::rethrow_exception(thrown);
    }
}

}  // namespace Tarnwick_API::Platform
