#pragma once

#include <memory>
#include <mutex>
#include <utility>

namespace Tarnwick_API::Platform {

/// A process-wide object that any thread may replace. The lock covers the pointer alone: the object is called without
/// it, and a replaced object lives on until its last user is done.
template <typename Object>
class ProcessWide {
public:
    /// One that is never destroyed, as other threads may still ask for it while the process exits.
    [[nodiscard]] static ProcessWide& immortal() { return *std::make_unique<ProcessWide>().release(); }

    [[nodiscard]] std::shared_ptr<Object> get() const {
        const std::lock_guard lock{mutex_};
        return object_;
    }

    /// The object, made with `make` when there is none. Threads that come at once may each make one; the first counts.
    template <typename Make>
    [[nodiscard]] std::shared_ptr<Object> getOr(Make make) {
        if (auto object = get()) {
            return object;
        }
        std::shared_ptr<Object> made = make();
        const std::lock_guard lock{mutex_};
        if (!object_) {
            object_ = made;
        }
        return object_;
    }

    void set(std::shared_ptr<Object> object) {
        {
            const std::lock_guard lock{mutex_};
            object_.swap(object);
        }
        // The replaced object goes here, outside the lock: its destructor is not ours.
    }

private:
    mutable std::mutex mutex_;
    std::shared_ptr<Object> object_;
};

/// A process-wide function of the host's, or none.
template <typename Function>
class ProcessWideFunction {
public:
    [[nodiscard]] static ProcessWideFunction& immortal() { return *std::make_unique<ProcessWideFunction>().release(); }

    [[nodiscard]] std::shared_ptr<const Function> get() const { return function_.get(); }

    /// An empty `function` removes the one installed.
    void set(Function function) {
        function_.set(function ? std::make_shared<const Function>(std::move(function)) : nullptr);
    }

private:
    ProcessWide<const Function> function_;
};

}  // namespace Tarnwick_API::Platform
