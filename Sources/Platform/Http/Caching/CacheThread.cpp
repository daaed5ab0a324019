#include <Platform/Http/Caching/CacheThread.hpp>

#include <Platform/Http/Caching/RequestFields.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

CacheThread& CacheThread::shared() {
    return ProcessLongThread<CacheThread>::worker();
}

CacheThread::CacheThread() {
    prepareSecondaryKeys();
}

void CacheThread::push(Job job) {
    const std::lock_guard lock{mutex_};
    // Late ones stay, untouched, for ever.
    jobs_.push_back(std::move(job));
    hasWork_.notify_one();
}

void CacheThread::run() {
    std::unique_lock lock{mutex_};
    while (true) {
        hasWork_.wait(lock, [this] { return isStopping_ || !jobs_.empty(); });
        if (isStopping_) {
            return;
        }
        auto job = std::move(jobs_.front());
        jobs_.pop_front();
        lock.unlock();
        job();
        // What it holds goes without the lock too.
        job = nullptr;
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
