#pragma once

#include <Platform/Http/Transfers/ConnectionSockets.hpp>
#include <Platform/Http/Transfers/CurlHandles.hpp>
#include <Platform/Http/Transfers/EarlyAnswers.hpp>
#include <Platform/Http/Transfers/Exchange.hpp>

#include <chrono>
#include <memory>
#include <vector>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

class OriginQueue;
class Transfer;
class TransferGroup;

/// Runs exchanges on one multi handle: admission, redirects, time-outs, completion. Thread: the I/O thread, but for
/// the constructor and `wake`.
class TransferEngine {
public:
    /// Throws std::runtime_error when libcurl can't be set up.
    TransferEngine();
    TransferEngine(const TransferEngine&) = delete;
    TransferEngine& operator=(const TransferEngine&) = delete;
    ~TransferEngine();

    /// Begins an exchange, or lets it wait until its origin has room.
    void start(Exchange exchange);

    /// Cancels all exchanges of `group`.
    void cancelAll(TransferGroup& group);

    /// Moves everything on as far as it goes without waiting. Returns whether there is more to do right away.
    [[nodiscard]] bool perform();

    /// Waits for network traffic, the next time-out or `wake`.
    void wait();

    /// Ends the current or the next `wait`. Thread: any.
    void wake();

private:
    using Time = std::chrono::steady_clock::time_point;

    void launch(Exchange exchange, OriginQueue& queue);
    void admitWaiting(OriginQueue& queue);
    void finish(Transfer& transfer, CURLcode code);
    void finishOverdue();
    [[nodiscard]] std::unique_ptr<Transfer> detach(Transfer& transfer);
    [[nodiscard]] Exchange recycle(std::unique_ptr<Transfer> transfer);

    CurlShare share_;
    /// Before the multi handle, which closes its connections when it goes.
    ConnectionSockets sockets_;
    EarlyAnswers earlyAnswers_;
    CurlMulti multi_;
    Time now_;
    std::vector<std::unique_ptr<Transfer>> running_;
    /// Empty where no handle may be used twice.
    std::vector<std::unique_ptr<Transfer>> spare_;
    /// No transfer is overdue before this. It may be too early, as progress moves deadlines on.
    Time nextCheck_ = Time::max();
    bool hasNew_ = false;
};

}  // namespace Tarnwick_API::Platform
