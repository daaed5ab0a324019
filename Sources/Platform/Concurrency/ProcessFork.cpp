#include <Platform/Concurrency/ProcessFork.hpp>

#include <memory>
#include <vector>

#include <pthread.h>

namespace Tarnwick_API::Platform {

namespace {

std::atomic<unsigned> generation = 0;

struct HeldMutexes {
    std::mutex mutex;
    std::vector<HeldOverFork*> entries;
};

HeldMutexes& heldMutexes() {
    // Never destroyed: the process may fork while it exits.
    static auto& held = *std::make_unique<HeldMutexes>().release();
    return held;
}

void beforeFork() {
    auto& held = heldMutexes();
    held.mutex.lock();
    for (const auto order : {HeldOverFork::Order::outer, HeldOverFork::Order::inner}) {
        for (auto* const entry : held.entries) {
            if (entry->order() == order) {
                entry->hold();
            }
        }
    }
}

void afterForkInParent() {
    auto& held = heldMutexes();
    for (auto* const entry : held.entries) {
        entry->release();
    }
    held.mutex.unlock();
}

void afterForkInChild() {
    ++generation;
    auto& held = heldMutexes();
    for (auto* const entry : held.entries) {
        entry->releaseInChild();
    }
    held.mutex.unlock();
}

/// While the program is loaded, and so before any thread of ours.
[[maybe_unused]] const int registered = ::pthread_atfork(&beforeFork, &afterForkInParent, &afterForkInChild);

}  // namespace

unsigned forkGeneration() noexcept {
    return generation;
}

HeldOverFork::HeldOverFork(std::mutex& mutex, Order order, std::condition_variable* changed)
    : mutex_{mutex}, order_{order}, changed_{changed} {
    auto& held = heldMutexes();
    const std::lock_guard lock{held.mutex};
    held.entries.push_back(this);
}

HeldOverFork::~HeldOverFork() {
    auto& held = heldMutexes();
    const std::lock_guard lock{held.mutex};
    std::erase(held.entries, this);
}

void HeldOverFork::releaseInChild() {
    if (changed_ != nullptr) {
        // Not destroyed before: that would wait for the threads that wait for it.
        std::construct_at(changed_);
    }
    mutex_.unlock();
}

}  // namespace Tarnwick_API::Platform
