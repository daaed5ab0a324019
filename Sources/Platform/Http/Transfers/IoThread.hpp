#pragma once

#include <Platform/Concurrency/ProcessFork.hpp>
#include <Platform/Concurrency/ProcessLongThread.hpp>
#include <Platform/Http/Transfers/CommandQueue.hpp>
#include <Platform/Http/Transfers/TransferEngine.hpp>

#include <memory>
#include <mutex>

namespace Tarnwick_API::Platform {

/// The process's one thread for network traffic. It alone touches libcurl's handles; other threads leave commands.
///
/// Life: a `ProcessLongThread` that starts with the first request. At exit it ends before the TLS library, which
/// setting up the engine has initialised, tears itself down. From then on nothing happens any more: requests under way
/// or waiting are abandoned, their `onAnswer` is neither called nor destroyed, and the handles stay as they are until
/// the process is gone. A request or a session's end that comes still later is dropped. In a child of `fork` that
/// has lost the thread none can begin, and a session's end cancels nothing: what was under way is the parent's. `fork`
/// waits until the thread waits itself: the TLS library's own exit handler takes locks that a thread cut off inside
/// that library would hold in the child for ever.
class IoThread {
public:
    /// The thread, started if need be. Throws std::system_error, std::runtime_error or std::bad_alloc when it can't
    /// be; the next call tries again. Thread: any.
    [[nodiscard]] static IoThread& shared();

    /// For `shared`, which starts the thread. Throws std::runtime_error when libcurl can't be set up.
    IoThread() = default;

    /// Begins or queues an exchange. Thread: any.
    void start(Exchange exchange);

    /// Cancels all exchanges of `group`. Thread: any.
    void cancelAll(std::shared_ptr<TransferGroup> group);

    /// Cancels the exchanges that have been stopped. Thread: any.
    void cancelStopped();

    /// See `HttpSession::networkChanged`. Thread: any.
    void networkChanged();

private:
    friend class ProcessLongThread<IoThread>;

    void push(Command command);
    void obey(Command&& command);
    void run();
    void stop();

    CommandQueue commands_;
    TransferEngine engine_;
    /// Passed before `working_` is taken anew: a thread without a pause would not let go of that long enough for
    /// others.
    std::mutex turnstile_;
    /// Held wherever the TLS library may be called. What the thread calls of a host, `MainQueue::soon`, must not fork.
    std::mutex working_;
    /// In this order: `fork` first closes the turnstile.
    HeldOverFork turnstileOverFork_{turnstile_, HeldOverFork::Order::outer};
    HeldOverFork workingOverFork_{working_, HeldOverFork::Order::outer};
};

}  // namespace Tarnwick_API::Platform
