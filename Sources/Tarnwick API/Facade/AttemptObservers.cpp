#include <Tarnwick_API/Facade/AttemptObservers.hpp>

#include <Tarnwick_API/Platform/Concurrency/MainQueue.hpp>

#include <atomic>
#include <cstddef>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace Tarnwick_API {

struct AttemptObservers::Entry {
    Handler handler;
    std::weak_ptr<Entries> entries;
    std::thread::id home = std::this_thread::get_id();
    std::atomic<bool> isRemoved = false;

    void call(const RequestAttempt& attempt) const {
        if (!isRemoved) {
            handler(attempt);
        }
    }
};

class AttemptObservers::Entries {
public:
    using List = std::vector<std::shared_ptr<const Entry>>;

    void add(std::shared_ptr<const Entry> entry) {
        const std::lock_guard lock{mutex_};
        list_.push_back(std::move(entry));
        count_ = list_.size();
    }

    void remove(const std::shared_ptr<const Entry>& entry) noexcept {
        const std::lock_guard lock{mutex_};
        std::erase(list_, entry);
        count_ = list_.size();
    }

    [[nodiscard]] List list() const {
        const std::lock_guard lock{mutex_};
        return list_;
    }

    [[nodiscard]] bool isEmpty() const noexcept { return count_ == 0; }

private:
    mutable std::mutex mutex_;
    List list_;
    std::atomic<std::size_t> count_ = 0;
};

AttemptObservers::Observation::Observation(std::shared_ptr<Entry> entry) : entry_{std::move(entry)} {
}

AttemptObservers::Observation& AttemptObservers::Observation::operator=(Observation&& other) noexcept {
    if (this != &other) {
        remove();
        entry_ = std::move(other.entry_);
    }
    return *this;
}

AttemptObservers::Observation::~Observation() {
    remove();
}

void AttemptObservers::Observation::remove() noexcept {
    // Taken out first: dropping the handler may come back here through what it holds.
    const auto entry = std::exchange(entry_, nullptr);
    if (!entry) {
        return;
    }
    entry->isRemoved = true;
    if (const auto entries = entry->entries.lock()) {
        entries->remove(entry);
    }
}

AttemptObservers::AttemptObservers() : entries_{std::make_shared<Entries>()} {
}

AttemptObservers::~AttemptObservers() = default;

AttemptObservers::Observation AttemptObservers::add(Handler handler) {
    if (!handler) {
        return {};
    }
    auto entry = std::make_shared<Entry>();
    entry->handler = std::move(handler);
    entry->entries = entries_;
    entries_->add(entry);
    return Observation{std::move(entry)};
}

bool AttemptObservers::isEmpty() const noexcept {
    return entries_->isEmpty();
}

void AttemptObservers::tell(const RequestAttempt& attempt, Teller teller) const {
    std::exception_ptr thrown;
    // The copy of the list keeps each handler alive while it runs, even when it ends its own registration.
    for (const auto& entry : entries_->list()) {
        if (teller == Teller::caller && entry->home != std::this_thread::get_id()) {
            Platform::MainQueue::main()->soon([entry, attempt] { entry->call(attempt); });
            continue;
        }
        try {
            entry->call(attempt);
        } catch (...) {
            thrown = thrown ? thrown : std::current_exception();
        }
    }
    if (thrown) {
        std::rethrow_exception(thrown);
    }
}

}  // namespace Tarnwick_API
