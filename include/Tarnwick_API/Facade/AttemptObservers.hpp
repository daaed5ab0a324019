#pragma once

#include <Tarnwick_API/Export.hpp>
#include <Tarnwick_API/Facade/RequestAttempt.hpp>

#include <functional>
#include <memory>

namespace Tarnwick_API {

/// Those who want to know what becomes of each attempt to send a request. An application adds itself with
/// `TarnwickApi::observeAttempts`; a host's own backend that sends requests tells them.
///
/// Thread: all operations may be called from any. An observer may add and remove observers, send requests and drop the
/// facade: an observer that it adds is not called for the attempt being told, one that it removes is not called any
/// more.
class TARNWICK_API_EXPORT AttemptObservers {
    struct TARNWICK_API_NO_EXPORT Entry;
    class TARNWICK_API_NO_EXPORT Entries;

public:
    /// What is called for each attempt.
    using Handler = std::function<void(const RequestAttempt&)>;

    /// Keeps an observer registered; destroying it ends that. It may outlive the observers, the facade and the backend.
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
        friend class AttemptObservers;
        explicit Observation(std::shared_ptr<Entry> entry);
        std::shared_ptr<Entry> entry_;
    };

    AttemptObservers();
    ~AttemptObservers();
    AttemptObservers(const AttemptObservers&) = delete;
    AttemptObservers& operator=(const AttemptObservers&) = delete;

    /// An empty `handler` observes nothing.
    [[nodiscard]] Observation add(Handler handler);

    /// Ask before making a `RequestAttempt`.
    [[nodiscard]] bool isEmpty() const noexcept;

    /// Which thread tells.
    enum class Teller {
        mainQueue,  ///< a task of the main queue
        caller,     ///< whoever made the request
    };

    /// Calls the observers, in the order of their addition. For a `caller` that is not on the thread where an observer
    /// was added, the main queue calls that one soon. All are called whatever they throw; then the first exception goes
    /// on.
    void tell(const RequestAttempt& attempt, Teller teller = Teller::mainQueue) const;

private:
    std::shared_ptr<Entries> entries_;
};

}  // namespace Tarnwick_API
