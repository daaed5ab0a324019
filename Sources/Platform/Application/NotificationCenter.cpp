#include <Tarnwick_API/Platform/Application/NotificationCenter.hpp>

#include <Platform/Concurrency/ProcessFork.hpp>

#include <algorithm>
#include <atomic>
#include <iterator>
#include <mutex>
#include <utility>
#include <vector>

namespace Tarnwick_API::Platform {

struct NotificationCenter::Observation::Entry {
    std::string name;
    Handler handler;
    bool fromAnySender = true;
    const void* senderAddress = nullptr;
    /// Tells a later object at the same address from the sender meant, which may be gone.
    std::weak_ptr<const void> sender;
    std::weak_ptr<State> center;
    std::atomic<bool> removed = false;

    [[nodiscard]] bool matches(const Notification& notification) const {
        const bool sameSender = notification.object.get() == senderAddress &&
                                !notification.object.owner_before(sender) && !sender.owner_before(notification.object);
        return (name.empty() || name == notification.name) && (fromAnySender || sameSender);
    }
};

class NotificationCenter::State {
public:
    using Entry = std::shared_ptr<Observation::Entry>;

    void add(const Entry& entry) {
        const std::lock_guard lock{mutex_};
        entries_.push_back(entry);
    }

    void remove(const Entry& entry) noexcept {
        const std::lock_guard lock{mutex_};
        std::erase(entries_, entry);
    }

    [[nodiscard]] std::vector<Entry> matching(const Notification& notification) const {
        const std::lock_guard lock{mutex_};
        std::vector<Entry> matching;
        std::ranges::copy_if(entries_, std::back_inserter(matching),
                             [&](const Entry& entry) { return entry->matches(notification); });
        return matching;
    }

private:
    mutable std::mutex mutex_;
    HeldOverFork heldOverFork_{mutex_, HeldOverFork::Order::inner};
    std::vector<Entry> entries_;
};

NotificationCenter::Observation::Observation(std::shared_ptr<Entry> entry) : entry_{std::move(entry)} {
}

NotificationCenter::Observation& NotificationCenter::Observation::operator=(Observation&& other) noexcept {
    if (this != &other) {
        remove();
        entry_ = std::move(other.entry_);
    }
    return *this;
}

NotificationCenter::Observation::~Observation() {
    remove();
}

void NotificationCenter::Observation::remove() noexcept {
    // Taken out first: dropping the handler may come back here through what it holds.
    const auto entry = std::exchange(entry_, nullptr);
    if (!entry) {
        return;
    }
    entry->removed = true;
    if (const auto center = entry->center.lock()) {
        center->remove(entry);
    }
}

NotificationCenter::NotificationCenter() : state_{std::make_shared<State>()} {
}

NotificationCenter::~NotificationCenter() = default;

NotificationCenter::Observation NotificationCenter::addObserver(std::string_view name, Handler handler,
                                                                const std::shared_ptr<const void>& object) {
    if (!handler) {
        return {};
    }
    auto entry = std::make_shared<Observation::Entry>();
    entry->name = name;
    entry->handler = std::move(handler);
    entry->fromAnySender = object == nullptr;
    entry->senderAddress = object.get();
    entry->sender = object;
    entry->center = state_;
    state_->add(entry);
    return Observation{std::move(entry)};
}

void NotificationCenter::post(const Notification& notification) {
    // The snapshot keeps each handler alive while it runs, even when it ends its own registration.
    for (const auto& entry : state_->matching(notification)) {
        if (!entry->removed) {
            entry->handler(notification);
        }
    }
}

NotificationCenter& NotificationCenter::defaultCenter() {
    // Never destroyed: other threads may still post while the process exits.
    static auto& center = *std::make_unique<NotificationCenter>().release();
    return center;
}

}  // namespace Tarnwick_API::Platform
