#include <Platform/Concurrency/ThreadSignals.hpp>
#include <Platform/Http/Transfers/IoThread.hpp>
#include <Platform/Http/Transfers/SessionState.hpp>

#include <cstdlib>
#include <exception>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Tarnwick_API::Platform {

namespace {

/// Commands kept in memory for the next batch; a greater batch gives its memory back.
constexpr std::size_t usualBatch = 1024;

}  // namespace

IoThread& IoThread::shared() {
    // Never destroyed: see the class.
    static IoThread* started = nullptr;
    static IoThread& thread = []() -> IoThread& {
        auto owner = std::make_unique<IoThread>();
        // Setting up the engine has initialised the TLS library, so that this handler runs before the library's.
        if (std::atexit([] {
                if (started != nullptr) {
                    started->stop();
                }
            }) != 0) {
            throw std::runtime_error{"no room for an exit handler"};
        }
        owner->thread_ = std::thread{[&self = *owner] { self.run(); }};
        started = owner.release();
        return *started;
    }();
    return thread;
}

void IoThread::transfer(Exchange exchange) {
    IoThread* thread = nullptr;
    try {
        thread = &shared();
    } catch (const std::exception& error) {
        fail(std::move(exchange), {HttpError::Kind::other, error.what()});
        return;
    }
    exchange.session->noteTransfer();
    thread->start(std::move(exchange));
}

void IoThread::start(Exchange exchange) {
    push(std::move(exchange));
}

void IoThread::cancelAll(std::shared_ptr<SessionState> session) {
    push(CancelAll{std::move(session)});
}

void IoThread::push(Command command) {
    if (commands_.push(std::move(command)) == CommandQueue::Pushed::takenByWaiting) {
        engine_.wake();
    }
}

void IoThread::run() {
    blockSignals();
    std::vector<Command> batch;
    bool mayWait = true;
    while (commands_.take(batch, mayWait)) {
        if (mayWait && batch.empty()) {
            engine_.wait();
            mayWait = false;
            continue;
        }
        for (auto& command : batch) {
            if (auto* const exchange = std::get_if<Exchange>(&command)) {
                engine_.start(std::move(*exchange));
            } else {
                engine_.cancelAll(*std::get<CancelAll>(command).session);
            }
        }
        batch.clear();
        if (batch.capacity() > usualBatch) {
            batch = std::vector<Command>{};
        }
        mayWait = !engine_.perform();
    }
}

void IoThread::stop() {
    if (commands_.close()) {
        engine_.wake();
    }
    // A host's queue may run tasks at once, against its contract, and one of them call `exit`.
    if (thread_.get_id() != std::this_thread::get_id()) {
        thread_.join();
    }
}

}  // namespace Tarnwick_API::Platform
