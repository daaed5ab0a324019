#pragma once

#include <Tarnwick_API/Events/Disposable.hpp>

#include <algorithm>
#include <concepts>
#include <cstddef>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

namespace Tarnwick_API {

/// Carries values of one type to any number of handlers, each for as long as its target object lives. For the events of
/// an application; the library raises none.
///
/// An event and the entries of its handlers hold each other: an event with handlers lives until each of them is
/// disposed of, also when the application has dropped both the event and the target. Disposing is the only way out.
/// Thread: one at a time for an event and all its entries; the same one throughout, as a rule the main thread.
template <typename Value>
class Event final : public std::enable_shared_from_this<Event<Value>> {
    static_assert(std::is_object_v<Value>, "an event carries values; take std::monostate to carry nothing");

    struct Access {
        explicit Access() = default;
    };

public:
    /// An event without handlers.
    [[nodiscard]] static std::shared_ptr<Event> create() { return std::make_shared<Event>(Access{}); }

    /// For `create`, which makes sure that events are shared.
    explicit Event(Access /*access*/) {}

    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;
    ~Event() = default;

    /// Adds a handler after all others. It is called as `handler(target, value)` while `target` lives: a member
    /// function (`&Window::showStatus`), or anything to call with the target and the value. It should not own the
    /// target, which would then never go. `target` is held weakly; once it has gone the handler is skipped but stays
    /// until it is disposed of.
    template <typename Target, typename Handler>
    requires std::is_invocable_v<Handler&, Target&, const Value&>
    [[nodiscard("the handler can't be removed without it")]] std::shared_ptr<Disposable> addHandler(
        const std::shared_ptr<Target>& target, Handler handler) {
        auto entry = std::make_shared<EventHandlerWrapper<Target, Handler>>(target, std::move(handler),
                                                                            this->shared_from_this());
        ownHandlers().push_back(entry);
        return entry;
    }

    /// Calls the handlers that there are now, in the order of their addition, before it returns. All of them get the
    /// value as it is now, whatever one of them does to the place it came from. What handlers add and dispose of
    /// meanwhile counts from the next raise on. An exception of a handler passes through, and the handlers after it are
    /// not called.
    ///
    /// The value is copied once when there is any handler. A value that can't be copied, or is costly to copy and no
    /// longer needed, is moved in; an event of `std::shared_ptr<const T>` carries one that should be neither.
    void raise(const Value& value) requires std::copy_constructible<Value> {
        if (!eventHandlers_->empty()) {
            invokeAll(Value(value));
        }
    }
    /// The same with a value that is moved in.
    void raise(Value&& value) requires std::move_constructible<Value> { invokeAll(Value(std::move(value))); }

    /// Handlers added and not disposed of, those without a living target included.
    [[nodiscard]] std::size_t handlerCount() const noexcept { return eventHandlers_->size(); }

private:
    class Invocable {
    public:
        Invocable() = default;
        Invocable(const Invocable&) = delete;
        Invocable& operator=(const Invocable&) = delete;
        virtual ~Invocable() = default;
        virtual void invoke(const Value& data) = 0;
    };

    template <typename Target, typename Handler>
    class EventHandlerWrapper final : public Invocable, public Disposable {
    public:
        EventHandlerWrapper(const std::shared_ptr<Target>& target, Handler handler, std::shared_ptr<Event> event)
            : target_{target}, handler_{std::move(handler)}, event_{std::move(event)} {}

        void invoke(const Value& data) override {
            if (const auto target = target_.lock()) {
                std::invoke(handler_, *target, data);
            }
        }

        void dispose() override {
            // The list may hold the last reference to this entry, and this entry the last one to the event.
            const auto event = event_;
            event->remove(this);
        }

    private:
        const std::weak_ptr<Target> target_;
        Handler handler_;
        const std::shared_ptr<Event> event_;
    };

    using Handlers = std::vector<std::shared_ptr<Invocable>>;

    /// `value` must be out of the handlers' reach.
    void invokeAll(const Value& value) {
        // A handler may dispose of all entries, and so of the last owner of this event.
        const auto snapshot = eventHandlers_;
        for (const auto& entry : *snapshot) {
            entry->invoke(value);
        }
    }

    /// The list to change: a copy when a raise is still walking the present one.
    Handlers& ownHandlers() {
        if (eventHandlers_.use_count() > 1) {
            eventHandlers_ = std::make_shared<Handlers>(*eventHandlers_);
        }
        return *eventHandlers_;
    }

    void remove(const Invocable* entry) {
        const auto isEntry = [entry](const auto& other) { return other.get() == entry; };
        if (std::none_of(eventHandlers_->begin(), eventHandlers_->end(), isEntry)) {
            return;
        }
        auto& handlers = ownHandlers();
        const auto place = std::find_if(handlers.begin(), handlers.end(), isEntry);
        // Destroying an entry runs the host's code, which may come back here: so only when the list is whole again.
        const auto removed = std::move(*place);
        handlers.erase(place);
    }

    std::shared_ptr<Handlers> eventHandlers_ = std::make_shared<Handlers>();
};

}  // namespace Tarnwick_API
