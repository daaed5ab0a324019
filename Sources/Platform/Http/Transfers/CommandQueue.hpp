#pragma once

#include <Platform/Http/Transfers/Exchange.hpp>

#include <deque>
#include <memory>
#include <mutex>
#include <variant>

namespace Tarnwick_API::Platform {

/// Asks the I/O thread to cancel all exchanges of a group.
struct CancelAll {
    std::shared_ptr<TransferGroup> group;
};

/// Tells the I/O thread that the network has changed.
struct NetworkChange {};

/// Asks the I/O thread to cancel the exchanges that have been stopped.
struct CancelStopped {};

using Command = std::variant<Exchange, CancelAll, CancelStopped, NetworkChange>;

/// Where other threads leave work for the I/O thread.
class CommandQueue {
public:
    enum class Pushed { taken, takenByWaiting, refused };

    /// Adds `command` unless the queue was closed, and says whether the I/O thread was about to wait and must be
    /// woken. It is so said once for each time it waits.
    [[nodiscard]] Pushed push(Command command);

    /// Moves all commands into `batch`, which must be empty. When there are none and `mayWait`, the next `push` says
    /// to wake. False when the queue was closed.
    [[nodiscard]] bool take(std::deque<Command>& batch, bool mayWait);

    /// Commands not taken yet stay, untouched, for ever. Says whether the I/O thread must be woken.
    [[nodiscard]] bool close();

private:
    std::mutex mutex_;
    std::deque<Command> commands_;
    bool isWaiting_ = false;
    bool isClosed_ = false;
};

}  // namespace Tarnwick_API::Platform
