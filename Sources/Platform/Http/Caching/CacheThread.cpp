#include <Platform/Http/Caching/CacheThread.hpp>
#include <Platform/Http/Caching/CachedExchange.hpp>
#include <Platform/Http/Caching/RequestFields.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

CacheThread& CacheThread::shared() {
    return ProcessLongThread<CacheThread>::worker();
}

CacheThread::CacheThread() {
    prepareRequestIdentities();
}

void CacheThread::lookUp(Exchange exchange) {
    push(LookUp{std::move(exchange)});
}

void CacheThread::settle(Exchange exchange, HttpAnswer answer) {
    push(Settle{std::move(exchange), std::move(answer)});
}

void CacheThread::push(Command command) {
    const std::lock_guard lock{mutex_};
    // Late ones stay, untouched, for ever.
    commands_.push_back(std::move(command));
    hasWork_.notify_one();
}

void CacheThread::run() {
    std::unique_lock lock{mutex_};
    while (true) {
        hasWork_.wait(lock, [this] { return isStopping_ || !commands_.empty(); });
        if (isStopping_) {
            return;
        }
        auto command = std::move(commands_.front());
        commands_.pop_front();
        lock.unlock();
        if (auto* const lookUp = std::get_if<LookUp>(&command)) {
            answerOrTransfer(std::move(lookUp->exchange));
        } else {
            auto& settle = std::get<Settle>(command);
            settleWithCache(std::move(settle.exchange), std::move(settle.answer));
        }
        lock.lock();
    }
}

void CacheThread::stop() {
    {
        const std::lock_guard lock{mutex_};
        isStopping_ = true;
    }
    hasWork_.notify_one();
}

}  // namespace Tarnwick_API::Platform
