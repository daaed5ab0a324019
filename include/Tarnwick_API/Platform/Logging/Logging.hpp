#pragma once

#include <Tarnwick_API/Export.hpp>

#include <functional>
#include <memory>
#include <string_view>

namespace spdlog {
class logger;
}

namespace Tarnwick_API::Platform {

/// The library's debug channel. Silent until the host gives it somewhere to go; until then a log statement costs
/// one branch and nothing is rendered.
///
/// What is written holds the consumer secret and the access token (in "Authorization" headers and in answers);
/// passwords in request bodies are masked. Switch it on for development, not in a shipped product.
///
/// An exception of a sink is reported on standard error by the logger and goes no further. What the library would log
/// while a sink calls it is dropped.
class TARNWICK_API_EXPORT Logging {
public:
    /// How serious an entry is.
    enum class Severity { debug, info, warning, error };

    /// One log entry. The texts are valid during the call alone, but `function` and `file`, which live for ever.
    struct Entry {
        Severity severity;
        std::string_view message;
        const char* function;
        const char* file;
        int line;
    };
    /// Where entries go.
    using Sink = std::function<void(const Entry&)>;

    /// Sends entries to a logger of the host's, at whose level and sinks they then go. None makes the library silent.
    /// Thread: any. The logger's own thread rules hold; entries come from the main queue and the requesting thread.
    static void setLogger(std::shared_ptr<spdlog::logger> logger);

    /// Sends every entry to `sink`, for hosts that use another logging library. An empty one makes the library
    /// silent. Thread: any; calls of `sink` do not overlap.
    static void setSink(Sink sink);

    /// The logger in use, named "Tarnwick_API" when this library made it; none when silent.
    [[nodiscard]] static std::shared_ptr<spdlog::logger> logger();
};

}  // namespace Tarnwick_API::Platform
