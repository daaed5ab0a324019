#pragma once

#include <Platform/Http/Transfers/ConnectionSockets.hpp>
#include <Platform/Http/Transfers/CurlHandles.hpp>
#include <Platform/Http/Transfers/EarlyAnswers.hpp>
#include <Platform/Http/Transfers/Exchange.hpp>
#include <Platform/Http/Transfers/RouteMonitor.hpp>
#include <Platform/Http/Transfers/WakeUp.hpp>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include <curl/curl.h>

namespace Tarnwick_API::Platform {

class OriginQueue;
class Transfer;
class TransferGroup;

/// Runs exchanges on one multi handle: admission, redirects, time-outs, changes of the network, completion. Thread: the
/// I/O thread, but for the constructor and `wake`.
class TransferEngine {
public:
    using Time = std::chrono::steady_clock::time_point;
    using Clock = std::function<Time()>;

    /// Throws std::runtime_error when libcurl can't be set up or the system gives no descriptor. `clock` tells the time
    /// that idle time-outs and redirects go by.
    explicit TransferEngine(Clock clock = &std::chrono::steady_clock::now);
    TransferEngine(const TransferEngine&) = delete;
    TransferEngine& operator=(const TransferEngine&) = delete;
    ~TransferEngine();

    /// Begins an exchange, or lets it wait until its origin has room.
    void start(Exchange exchange);

    /// Cancels all exchanges of `group`.
    void cancelAll(TransferGroup& group);

    /// Cancels all exchanges that have been stopped.
    void cancelStopped();

    /// The host says that the network has changed.
    void networkChanged();

    /// Moves everything on as far as it goes without waiting. Returns whether there is more to do right away.
    [[nodiscard]] bool perform();

    /// Waits for network traffic, a change of the network, the next time-out or `wake`, but no longer than `longest`.
    void wait(std::chrono::milliseconds longest = std::chrono::hours{1});

    /// How long `wait` may wait while nothing happens.
    [[nodiscard]] std::chrono::milliseconds timeToWait(std::chrono::milliseconds longest) const;

    /// Ends the current or the next `wait`. Thread: any.
    void wake();

private:
    void launch(Exchange exchange, OriginQueue& queue);
    void prepareHandle();
    /// A handle that has carried nothing, prepared. Throws std::bad_alloc.
    [[nodiscard]] CurlEasy takeHandle();
    void admitWaiting(OriginQueue& queue);
    void admitAllWaiting();
    [[nodiscard]] bool isConnecting() const noexcept;
    void finish(Transfer& transfer, CURLcode code);
    void finishOverdue();
    void finishLeftBehind();
    void noticeChange();
    /// When `perform` is next needed though nothing comes or goes.
    [[nodiscard]] Time nextDeadline() const noexcept;
    [[nodiscard]] std::unique_ptr<Transfer> detach(Transfer& transfer);

    CurlShare share_;
    /// Before the multi handle, which closes its connections when it goes.
    ConnectionSockets sockets_;
    EarlyAnswers earlyAnswers_;
    CurlMulti multi_;
    Clock clock_;
    Time now_;
    std::vector<std::unique_ptr<Transfer>> running_;
    /// For the next transfer, if it has been made already.
    CurlEasy nextHandle_;
    /// No transfer is overdue before this. It may be too early, as progress moves deadlines on.
    Time nextCheck_ = Time::max();
    bool hasNew_ = false;
    WakeUp wakeUp_;
    /// Whether a call has ended the last wait, and is to be forgotten before the next.
    bool isCalled_ = false;
    RouteMonitor monitor_;
    /// When the notices of one change are thought to have come all; no change is going on at the greatest time.
    Time changeSettles_ = Time::max();
};

}  // namespace Tarnwick_API::Platform
