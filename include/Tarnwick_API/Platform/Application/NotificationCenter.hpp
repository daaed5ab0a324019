#pragma once

#include <Tarnwick_API/Export.hpp>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// What a notification centre hands to its observers.
struct Notification {
    std::string name;
    /// The sender; compared by identity. May be absent.
    std::shared_ptr<const void> object;
};

/// Tells observers by name, and if wanted by sender, that something happened.
///
/// Thread: all operations may be called from any; observers run on the posting thread, before `post` returns, in
/// order of registration. An observer may add and remove observers and post: one that it adds is not called by the
/// running post, one that it removes is not called any more.
class TARNWICK_API_EXPORT NotificationCenter {
public:
    /// What is called for each notification.
    using Handler = std::function<void(const Notification&)>;

    /// Keeps an observer registered; destroying it ends that. It may outlive the centre.
    class Observation {
    public:
        Observation() = default;
        Observation(Observation&&) noexcept = default;
        Observation& operator=(Observation&& other) noexcept;
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        ~Observation();

        /// Ends the registration now. Harmless when it has ended.
        void remove() noexcept;

    private:
        friend class NotificationCenter;
        struct TARNWICK_API_NO_EXPORT Entry;
        explicit Observation(std::shared_ptr<Entry> entry);
        std::shared_ptr<Entry> entry_;
    };

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// Calls `handler` for notifications named `name` (empty: of any name) from `object` (none: from any sender).
    /// The centre keeps the handler, not the sender, alive; let the handler hold its own target weakly.
    [[nodiscard]] Observation addObserver(std::string_view name, Handler handler,
                                          const std::shared_ptr<const void>& object = nullptr);

    /// Calls the matching observers. An exception of one ends the post and reaches the caller.
    void post(const Notification& notification);

    /// The process-wide centre on which this library posts.
    [[nodiscard]] static NotificationCenter& defaultCenter();

private:
    class TARNWICK_API_NO_EXPORT State;
    std::shared_ptr<State> state_;
};

}  // namespace Tarnwick_API::Platform
