#pragma once

#include <Tarnwick_API/Export.hpp>

#include <memory>

namespace Tarnwick_API::Platform {

struct ProcessValues;

/// Remembers every process-wide value when it is made, and gives all of them back when it goes, so that a test installs
/// what it needs and leaves nothing behind. For tests of this library and of applications.
///
/// The values are those of `MainQueue::setMain`, `Bundle::setMain`, `Preferences::setLookup`,
/// `Locale::setIdentifierLookup`, `HostName::setLookup`, `WallClock::setSource`, `Logging::setLogger` and `setSink`,
/// `UrlCache::setShared`, `Keychain::setStore` and `ApiVersion1::setSessionManager`, and the cache and the session that
/// the library makes when it has none of the host's. Observers of `NotificationCenter::defaultCenter` stay.
///
/// What was installed meanwhile goes with it. An installed function may be called until then: let it own what it uses,
/// or refer to what was made before this.
/// Nesting: the last one made goes first, as members and local variables do.
/// Thread: any, but it changes the values for all threads. Not for production code: requests on their way would go on
/// with another session, queue or keychain than they began with.
class TARNWICK_API_EXPORT ScopedProcessValues {
public:
    /// What the values are to begin with.
    enum class Start {
        current,   ///< every value stays as it is
        defaults,  ///< every value starts as where nothing was installed: the keychain is the user's own
    };

    explicit ScopedProcessValues(Start start = Start::current);
    ~ScopedProcessValues();
    ScopedProcessValues(const ScopedProcessValues&) = delete;
    ScopedProcessValues& operator=(const ScopedProcessValues&) = delete;

private:
    std::unique_ptr<ProcessValues> remembered_;
};

}  // namespace Tarnwick_API::Platform
