#pragma once

#include <Tarnwick_API/Platform/Application/Url.hpp>

#include <Platform/Http/Transfers/Exchange.hpp>

#include <algorithm>
#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Tarnwick_API::Platform {

/// Admits the exchanges of one session with one origin. libcurl gets only what can run at once: its own list of pending
/// transfers costs time by the square of its length, and a whole easy handle for each.
///
/// How many requests a connection takes is for the server to say, and libcurl, which opens another for each one more,
/// keeps it to itself. A tried connection holds for good what it carries; of all other exchanges each may come to need
/// a connection of its own. So no more of these are admitted than connections may still be opened, unless as many in
/// all have been seen to find room before.
class OriginQueue {
public:
    /// Tells one connection from another.
    using ConnectionId = const void*;

    // A limit of nothing would let requests wait for ever.
    OriginQueue(std::string origin, std::size_t connections, std::size_t streams)
        : origin_{std::move(origin)},
          connections_{std::max<std::size_t>(connections, 1)},
          streams_{std::max<std::size_t>(streams, 1)} {}

    /// Its `originKey`.
    [[nodiscard]] const std::string& origin() const noexcept { return origin_; }

    [[nodiscard]] bool isFull() const noexcept;
    void enter() noexcept { ++running_; }
    /// An exchange's request goes out on a connection, `isNew` when it was opened for it.
    void occupy(ConnectionId connection, bool isTried, bool isNew);
    /// It is no longer there.
    void release(ConnectionId connection) noexcept;
    /// An exchange has ended, its connection released.
    void leave() noexcept { --running_; }
    /// An answer came over a connection for many requests at once (HTTP/2), or for one at a time.
    void answered(ConnectionId connection, bool isTried, bool isMultiplexed) noexcept;

    /// The connections are not to be counted on any more.
    void forgetRoom() noexcept { proven_ = 0; }

    /// All that wait are of one group.
    void wait(Exchange exchange);
    [[nodiscard]] bool hasWaiting() const noexcept { return !waiting_.empty(); }
    [[nodiscard]] Exchange takeWaiting();
    /// Moves those that have been stopped to the end of `stopped`.
    void takeStopped(std::vector<Exchange>& stopped);

private:
    struct Used {
        ConnectionId connection;
        std::size_t exchanges;
        bool isTried;
    };

    /// What an exchange has for itself. Thousands may wait.
    struct Waiting {
        std::shared_ptr<const HttpRequest> request;
        Transport::OnAnswer onAnswer;
        std::unique_ptr<ExchangeStop> stop;
        std::unique_ptr<Hop> hop;
    };

    [[nodiscard]] Exchange exchangeOf(Waiting waiting) const;
    void letGroupGo() noexcept;
    [[nodiscard]] std::vector<Used>::iterator find(ConnectionId connection) noexcept;
    void settle(std::size_t exchanges) noexcept;

    std::string origin_;
    std::size_t connections_;
    std::size_t streams_;
    std::size_t limit_ = connections_;
    std::size_t running_ = 0;
    /// Those of them on tried connections.
    std::size_t settled_ = 0;
    /// The number of tried connections in use.
    std::size_t tried_ = 0;
    /// So many have found room on the connections that there are.
    std::size_t proven_ = 0;
    std::vector<Used> used_;
    std::deque<Waiting> waiting_;
    /// Of those that wait; none while none does.
    std::shared_ptr<TransferGroup> group_;
};

/// "https://host:443": what tells one origin from another.
[[nodiscard]] std::string originKey(const Url& url);

}  // namespace Tarnwick_API::Platform
