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
/// What is written holds the consumer secret and the access token (in "Authorization" headers, in paths and in
/// answers); passwords in request bodies are masked. That is for development: a product that ships gives
/// `Secrets::hidden` with its sink or logger.
///
/// An exception of a sink, of whatever type, loses that one line and nothing else: it is reported on standard error by
/// the logger and goes no further. A sink may call the library, the keychain too, and may wait for another thread that
/// does. What the library would log on the sink's own thread meanwhile is dropped.
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

    /// What entries may tell of secrets.
    enum class Secrets {
        shown,  ///< all but passwords: requests and answers as they are, for a log that stays with the developer
        /// None of them, nor who the user is, for a log that is kept or sent. Of a request there are method, host, the
        /// path's own words, and the values of those headers and parameters that are the same for every user; anything
        /// else, known to the library or not, reads "HIDDEN". Of an answer there are status and size. What a host's
        /// own exceptions say is left out. Paths of the library's files stay.
        hidden,
    };

    /// Sends entries to a logger of the host's, at whose level and sinks they then go. None makes the library silent.
    /// `secrets` holds for this logger: an entry made for another one never comes to it.
    /// Thread: any. The logger's own thread rules hold; entries come from the main queue, the requesting thread and the
    /// library's own.
    static void setLogger(std::shared_ptr<spdlog::logger> logger, Secrets secrets = Secrets::shown);

    /// Sends every entry to `sink`, for hosts that use another logging library. An empty one makes the library
    /// silent. `secrets` as above. Thread: any; calls of `sink` do not overlap. Who has an entry for it while it is at
    /// another one does not wait: the thread that it runs on brings it that entry next.
    static void setSink(Sink sink, Secrets secrets = Secrets::shown);

    /// The logger in use, named "Tarnwick_API" when this library made it; none when silent.
    [[nodiscard]] static std::shared_ptr<spdlog::logger> logger();
};

}  // namespace Tarnwick_API::Platform
