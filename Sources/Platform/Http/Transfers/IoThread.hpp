#pragma once

#include <Platform/Http/Transfers/CommandQueue.hpp>
#include <Platform/Http/Transfers/TransferEngine.hpp>

#include <memory>
#include <thread>

namespace Tarnwick_API::Platform {

/// The process's one thread for network traffic. It alone touches libcurl's handles; other threads leave commands.
///
/// Life: it starts with the first request and runs until the process exits (a return from `main`, or `exit`). A
/// handler registered at the start then stops and joins it, before the TLS library, initialised earlier, tears itself
/// down and before static objects made before the first request are destroyed. From then on nothing happens any more:
/// requests under way or waiting are abandoned, their completions are neither called nor destroyed, and the handles
/// stay as they are until the process is gone. A request or a session's end that comes still later is dropped. A
/// process that leaves by other ways (`_exit`, a signal) takes the thread with it as any other. It does not survive
/// `fork`: a child must not use sessions when its parent did.
class IoThread {
public:
    /// The thread, started if need be. Throws std::system_error, std::runtime_error or std::bad_alloc when it can't
    /// be; the next call tries again. Thread: any.
    [[nodiscard]] static IoThread& shared();

    /// Begins or queues an exchange on the shared thread; fails it when that can't be started. Thread: any.
    static void transfer(Exchange exchange);

    /// For `shared`, which starts the thread.
    IoThread() = default;

    /// Begins or queues an exchange. Thread: any.
    void start(Exchange exchange);

    /// Cancels all exchanges of `session`. Thread: any.
    void cancelAll(std::shared_ptr<SessionState> session);

private:
    void push(Command command);
    void run();
    void stop();

    CommandQueue commands_;
    TransferEngine engine_;
    std::thread thread_;
};

}  // namespace Tarnwick_API::Platform
