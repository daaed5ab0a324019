#include <Tarnwick_API/Platform/KeychainStore.hpp>

#include <Tarnwick_API/Platform/MainQueue.hpp>

#include <utility>

namespace Platform {

KeychainStoreState KeychainStore::state() {
    KeychainStoreState own;
    own.name = "the application's own store";
    return own;
}

void KeychainStore::unlock(std::function<void(KeychainStatus)> onCompletion) {
    if (onCompletion) {
        MainQueue::main()->soon([completion = std::move(onCompletion)] { completion(KeychainStatus::success); });
    }
}

}  // namespace Platform
