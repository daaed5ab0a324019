#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Concurrency/ProcessLongThread.hpp>
#include <Platform/Http/Transfers/Exchange.hpp>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <variant>

namespace Tarnwick_API::Platform {

/// The process's one thread for what exchanges have to do with caches, so that waiting for a disk holds up neither the
/// main queue nor the transfers. It works in order: what an answer stores is there for every request made after that
/// answer was delivered.
///
/// Life: a `ProcessLongThread` that starts with the first request that has a cache. At exit it finishes what it is at,
/// so that a short-lived program too keeps every answer that was delivered; requests that wait are abandoned, as they
/// are by `IoThread`.
class CacheThread {
public:
    /// The thread, started if need be. Throws std::system_error, std::runtime_error or std::bad_alloc when it can't be;
    /// the next call tries again. Thread: any.
    [[nodiscard]] static CacheThread& shared();

    /// For `shared`, which starts the thread.
    CacheThread();

    /// Completes the exchange from its cache, or sends it to the server. Thread: any.
    void lookUp(Exchange exchange);

    /// Completes the exchange with the server's answer, which has no error. Thread: any.
    void settle(Exchange exchange, HttpAnswer answer);

private:
    friend class ProcessLongThread<CacheThread>;

    struct LookUp {
        Exchange exchange;
    };
    struct Settle {
        Exchange exchange;
        HttpAnswer answer;
    };
    using Command = std::variant<LookUp, Settle>;

    void push(Command command);
    void run();
    void stop();

    std::mutex mutex_;
    std::condition_variable hasWork_;
    std::deque<Command> commands_;
    bool isStopping_ = false;
};

}  // namespace Tarnwick_API::Platform
