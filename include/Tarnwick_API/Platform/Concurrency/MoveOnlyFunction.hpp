#pragma once

#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace Tarnwick_API::Platform {

template <typename Signature>
class MoveOnlyFunction;

/// What can be called, as `std::function`, but may own what only moves (a promise, a `std::unique_ptr`) and so is moved
/// and never copied. Made of a lambda, a function or a `std::function`; an empty one of these makes an empty one.
/// Calling an empty one is not allowed.
template <typename Result, typename... Arguments>
class MoveOnlyFunction<Result(Arguments...)> {
public:
    MoveOnlyFunction() = default;
    MoveOnlyFunction(std::nullptr_t) noexcept {}
    template <typename Callable>
    requires(!std::same_as<std::remove_cvref_t<Callable>, MoveOnlyFunction> &&
             std::is_invocable_r_v<Result, std::decay_t<Callable>&, Arguments...>)
        // NOLINTNEXTLINE(bugprone-forwarding-reference-overload): its condition leaves this type out
        MoveOnlyFunction(Callable&& callable) {
        if constexpr (requires { callable == nullptr; }) {
            if (callable == nullptr) {
                return;
            }
        }
        target_ = std::make_unique<TargetOf<std::decay_t<Callable>>>(std::forward<Callable>(callable));
    }

    [[nodiscard]] explicit operator bool() const noexcept { return target_ != nullptr; }
    friend bool operator==(const MoveOnlyFunction& function, std::nullptr_t) noexcept { return !function; }

    Result operator()(Arguments... arguments) const { return target_->call(std::forward<Arguments>(arguments)...); }

private:
    struct Target {
        Target() = default;
        Target(const Target&) = delete;
        Target& operator=(const Target&) = delete;
        virtual ~Target() = default;
        virtual Result call(Arguments&&... arguments) = 0;
    };

    template <typename Callable>
    struct TargetOf final : Target {
        explicit TargetOf(Callable source) : callable{std::move(source)} {}
        Result call(Arguments&&... arguments) override {
            return static_cast<Result>(std::invoke(callable, std::forward<Arguments>(arguments)...));
        }
        Callable callable;
    };

    std::unique_ptr<Target> target_;
};

}  // namespace Tarnwick_API::Platform
