#include <Platform/Http/Transfers/CommandQueue.hpp>

#include <utility>

namespace Tarnwick_API::Platform {

CommandQueue::Pushed CommandQueue::push(Command command) {
    const std::lock_guard lock{mutex_};
    if (isClosed_) {
        return Pushed::refused;
    }
    commands_.push_back(std::move(command));
    return std::exchange(isWaiting_, false) ? Pushed::takenByWaiting : Pushed::taken;
}

bool CommandQueue::take(std::deque<Command>& batch, bool mayWait) {
    const std::lock_guard lock{mutex_};
    if (isClosed_) {
        return false;
    }
    batch.swap(commands_);
    isWaiting_ = mayWait && batch.empty();
    return true;
}

bool CommandQueue::close() {
    const std::lock_guard lock{mutex_};
    isClosed_ = true;
    return std::exchange(isWaiting_, false);
}

}  // namespace Tarnwick_API::Platform
