#include <Tarnwick_API/Operations/StoppableScope.hpp>

#include <utility>

namespace Tarnwick_API {

namespace {

thread_local StoppableScope* innermost = nullptr;

}  // namespace

StoppableScope::StoppableScope(Platform::StopToken token) noexcept
    : token_{std::move(token)}, outer_{std::exchange(innermost, this)} {
}

StoppableScope::~StoppableScope() {
    innermost = outer_;
}

Platform::StopToken StoppableScope::take() {
    if (innermost != nullptr) {
        innermost->isTaken_ = true;
    }
    return current();
}

Platform::StopToken StoppableScope::current() {
    return innermost == nullptr ? Platform::StopToken{} : innermost->token_;
}

}  // namespace Tarnwick_API
