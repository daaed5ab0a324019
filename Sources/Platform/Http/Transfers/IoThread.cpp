#include <Platform/Http/Transfers/IoThread.hpp>

#include <deque>
#include <mutex>
#include <utility>
#include <variant>

namespace Tarnwick_API::Platform {

IoThread& IoThread::shared() {
    return ProcessLongThread<IoThread>::worker();
}

void IoThread::start(Exchange exchange) {
    push(std::move(exchange));
}

void IoThread::cancelAll(std::shared_ptr<TransferGroup> group) {
    if (!ProcessLongThread<IoThread>::isLost()) {
        push(CancelAll{std::move(group)});
    }
}

void IoThread::cancelStopped() {
    if (!ProcessLongThread<IoThread>::isLost()) {
        push(CancelStopped{});
    }
}

void IoThread::networkChanged() {
    push(NetworkChange{});
}

void IoThread::push(Command command) {
    if (commands_.push(std::move(command)) == CommandQueue::Pushed::takenByWaiting) {
        engine_.wake();
    }
}

void IoThread::run() {
    std::deque<Command> batch;
    bool mayWait = true;
    while (commands_.take(batch, mayWait)) {
        if (mayWait && batch.empty()) {
            engine_.wait();
            mayWait = false;
            continue;
        }
        static_cast<void>(std::lock_guard{turnstile_});
        const std::lock_guard lock{working_};
        bool haveStopped = false;
        for (; !batch.empty(); batch.pop_front()) {
            haveStopped = haveStopped || std::holds_alternative<CancelStopped>(batch.front());
            obey(std::move(batch.front()));
        }
        // Once for all: each time, everything that waits is looked at.
        if (haveStopped) {
            engine_.cancelStopped();
        }
        mayWait = !engine_.perform();
    }
}

void IoThread::obey(Command&& command) {
    if (auto* const exchange = std::get_if<Exchange>(&command)) {
        engine_.start(std::move(*exchange));
    } else if (auto* const cancelled = std::get_if<CancelAll>(&command)) {
        engine_.cancelAll(*cancelled->group);
    } else if (std::holds_alternative<NetworkChange>(command)) {
        engine_.networkChanged();
    }
}

void IoThread::stop() {
    if (commands_.close()) {
        engine_.wake();
    }
}

}  // namespace Tarnwick_API::Platform
