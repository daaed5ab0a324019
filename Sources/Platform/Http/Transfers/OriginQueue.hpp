#pragma once

#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <Platform/Http/Transfers/Exchange.hpp>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <string>
#include <utility>

namespace Tarnwick_API::Platform {

/// Admits the exchanges of one session with one origin. libcurl gets only what can run at once: its own list of pending
/// transfers costs time by the square of its length, and a whole easy handle for each.
class OriginQueue {
public:
    // A limit of nothing would let requests wait for ever.
    OriginQueue(std::size_t connections, std::size_t streams) noexcept
        : connections_{std::max<std::size_t>(connections, 1)}, streams_{std::max<std::size_t>(streams, 1)} {}

    [[nodiscard]] bool isFull() const noexcept { return running_ >= limit_; }
    void enter() noexcept { ++running_; }
    void leave() noexcept { --running_; }
    /// An answer came: over a connection for many requests at once (HTTP/2), or for one at a time.
    void answered(bool isMultiplexed) noexcept { limit_ = isMultiplexed ? streams_ : connections_; }

    void wait(Exchange exchange) { waiting_.push_back(std::move(exchange)); }
    [[nodiscard]] bool hasWaiting() const noexcept { return !waiting_.empty(); }
    [[nodiscard]] Exchange takeWaiting() {
        Exchange first = std::move(waiting_.front());
        waiting_.pop_front();
        return first;
    }

private:
    std::size_t connections_;
    std::size_t streams_;
    std::size_t limit_ = connections_;
    std::size_t running_ = 0;
    std::deque<Exchange> waiting_;
};

/// "https://host:443": what tells one origin from another.
[[nodiscard]] std::string originKey(const Url& url);

}  // namespace Tarnwick_API::Platform
