#pragma once

#include <Platform/Http/Transfers/CurlHandles.hpp>
#include <Platform/Http/Transfers/Exchange.hpp>
#include <Platform/Http/Transfers/Transfer.hpp>

#include <memory>
#include <vector>

namespace Tarnwick_API::Platform {

class SessionState;

/// Runs exchanges on one multi handle: admission, redirects, time-outs, completion. Thread: the I/O thread, but for
/// the constructor and `wake`.
class TransferEngine {
public:
    /// Throws std::runtime_error when libcurl can't be set up.
    TransferEngine();

    /// Begins an exchange, or lets it wait until its origin has room.
    void start(Exchange exchange);

    /// Cancels all exchanges of `session`.
    void cancelAll(SessionState& session);

    /// Moves everything on as far as it goes without waiting. Returns whether there is more to do right away.
    [[nodiscard]] bool perform();

    /// Waits for network traffic, the next time-out or `wake`.
    void wait();

    /// Ends the current or the next `wait`. Thread: any.
    void wake();

private:
    void launch(Exchange exchange, OriginQueue& origin);
    void admitWaiting(OriginQueue& origin);
    void finish(Transfer& transfer, CURLcode code);
    void finishOverdue();
    [[nodiscard]] std::unique_ptr<Transfer> detach(Transfer& transfer);
    [[nodiscard]] Exchange recycle(std::unique_ptr<Transfer> transfer);

    CurlShare share_;
    CurlMulti multi_;
    Transfer::Time now_;
    std::vector<std::unique_ptr<Transfer>> running_;
    std::vector<std::unique_ptr<Transfer>> spare_;
    /// No transfer is overdue before this. It may be too early, as progress moves deadlines on.
    Transfer::Time nextCheck_ = Transfer::Time::max();
    bool hasNew_ = false;
};

}  // namespace Tarnwick_API::Platform
