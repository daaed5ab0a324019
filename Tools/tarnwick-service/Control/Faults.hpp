#pragma once

#include "Http/Exchange.hpp"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace TarnwickService {

/// Misbehaviour ordered from outside, for the next `count` requests that it applies to.
struct Fault {
    std::size_t count = 1;
    /// Restricts the fault to this path below "/vb/" ("users/me"), or to those that start with it when it ends in '*'.
    /// Empty: every path.
    std::string path{};
    /// Restricts the fault to this method. Empty: every method.
    std::string method{};

    /// Passes before anything else happens to the request.
    std::chrono::milliseconds delay{0};

    /// A status, a body or both replace the service's own answer (200, no body, when one of them is not given).
    std::optional<unsigned> status{};
    /// Sent byte for byte, whatever it holds.
    std::optional<std::string> body{};
    std::string contentType = "text/plain; charset=utf-8";
    std::vector<std::pair<std::string, std::string>> headers{};

    /// With `Cut::beforeHandshake` the fault meets connections, not requests.
    Cut cut = Cut::none;
    std::size_t cutAfterBytes = 0;
    Ending ending = Ending::closed;
    std::optional<std::uint64_t> contentLength{};
    Chunks chunks = Chunks::none;
    std::optional<unsigned> interim{};
    std::optional<std::string> raw{};
    std::string leftover{};

    /// Whether a request takes effect although its answer is replaced or withheld. One whose own answer is merely
    /// delayed or damaged always does.
    bool takesEffect = false;
};

/// The ordered faults, first come first served. Every operation may be called from any thread.
class Faults {
public:
    void add(Fault fault);
    void clear();
    std::vector<Fault> pending() const;

    /// The first fault that applies to a request, one use of it spent.
    std::optional<Fault> take(std::string_view method, std::string_view path);
    /// The same for a connection.
    std::optional<Fault> takeForConnection();

    /// Waits; false when `cancelPauses` ended the wait.
    bool pause(std::chrono::milliseconds duration);
    /// Ends all waits, and all later ones at once.
    void cancelPauses();
    void allowPauses();

private:
    template <typename Applies>
    std::optional<Fault> takeIf(const Applies& applies);

    mutable std::mutex mutex_;
    std::condition_variable cancelled_;
    std::list<Fault> faults_;
    bool pausesCancelled_ = false;
};

}  // namespace TarnwickService
