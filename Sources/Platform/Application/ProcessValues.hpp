#pragma once

#include <Tarnwick_API/Platform/Application/Preferences.hpp>
#include <Tarnwick_API/Platform/Application/WallClock.hpp>
#include <Tarnwick_API/Platform/Logging/Logging.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace Tarnwick_API::Platform {

class Bundle;
class HttpSession;
class KeychainStore;
class MainQueue;
class UrlCache;

/// What a process has one of, as the host installed it or as it was first asked for. None: its reader has a fallback.
struct ProcessValues {
    template <typename Signature>
    using Function = std::shared_ptr<const std::function<Signature>>;

    // First, so that it is destroyed last: a session that goes tells its requests on it.
    std::shared_ptr<MainQueue> mainQueue;
    std::shared_ptr<spdlog::logger> logger;
    /// What `logger` may be told.
    Logging::Secrets secretsOfLogger = Logging::Secrets::shown;
    std::shared_ptr<const Bundle> mainBundle;
    std::shared_ptr<const Preferences::Lookup> preferencesLookup;
    Function<std::string()> localeIdentifierLookup;
    Function<std::optional<std::string>()> hostNameLookup;
    Function<WallTime()> wallClockSource;
    std::shared_ptr<UrlCache> installedUrlCache;
    std::shared_ptr<UrlCache> builtInUrlCache;
    std::shared_ptr<KeychainStore> keychainStore;
    std::shared_ptr<HttpSession> sharedSession;
};

}  // namespace Tarnwick_API::Platform
