#pragma once

#include <Platform/Application/ProcessValues.hpp>
#include <Platform/Concurrency/ProcessFork.hpp>

#include <atomic>
#include <concepts>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace Tarnwick_API::Platform {

/// The values of this process, which any thread may read and replace. The lock covers the pointers alone: the objects
/// are called without it, and a replaced one lives on until its last user is done.
class ProcessValuesInUse {
public:
    [[nodiscard]] static ProcessValuesInUse& shared();

    /// What `read` gives, called with the values under the lock.
    template <typename Read>
    [[nodiscard]] auto read(Read read) const {
        const std::lock_guard lock{mutex_};
        return read(values_);
    }

    /// Calls `change` with the values under the lock. It must move out what it replaces, for the caller to destroy: the
    /// destructor is not ours.
    template <typename Change>
    void change(Change change) {
        const std::lock_guard lock{mutex_};
        change(values_);
        hasLogger_.store(values_.logger != nullptr, std::memory_order_relaxed);
    }

    /// Whether there is a logger, for one load and no lock.
    [[nodiscard]] static bool hasLogger() noexcept { return hasLogger_.load(std::memory_order_relaxed); }

private:
    static inline std::atomic<bool> hasLogger_{false};

    mutable std::mutex mutex_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::inner};
    ProcessValues values_;
};

/// One of the values: `constexpr ProcessWide installedQueue{&ProcessValues::mainQueue};`
template <typename Object>
class ProcessWide {
public:
    constexpr explicit ProcessWide(std::shared_ptr<Object> ProcessValues::*member) noexcept : member_{member} {}

    [[nodiscard]] std::shared_ptr<Object> get() const {
        return ProcessValuesInUse::shared().read([this](const ProcessValues& values) { return values.*member_; });
    }

    /// The object, made with `make` when there is none. Threads that come at once may each make one; the first counts.
    template <typename Make>
    [[nodiscard]] std::shared_ptr<Object> getOr(Make make) const {
        if (auto object = get()) {
            return object;
        }
        const std::shared_ptr<Object> made = make();
        std::shared_ptr<Object> first;
        ProcessValuesInUse::shared().change([&](ProcessValues& values) {
            auto& object = values.*member_;
            if (!object) {
                object = made;
            }
            first = object;
        });
        return first;
    }

    void set(std::shared_ptr<Object> object) const {
        ProcessValuesInUse::shared().change([&](ProcessValues& values) { (values.*member_).swap(object); });
    }

    /// An empty `function` removes the one installed.
    template <typename Function>
    requires std::same_as<Object, const Function>
    void set(Function function) const {
        set(function ? std::make_shared<const Function>(std::move(function)) : nullptr);
    }

private:
    std::shared_ptr<Object> ProcessValues::*member_;
};

}  // namespace Tarnwick_API::Platform
