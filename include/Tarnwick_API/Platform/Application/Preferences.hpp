#pragma once

#include <Tarnwick_API/Export.hpp>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// The user's preferences for the hosting application, as far as this library reads them: the text "cid".
class TARNWICK_API_EXPORT Preferences {
public:
    /// Gives the text stored under a key, or none. Called on the thread that makes the request.
    using Lookup = std::function<std::optional<std::string>(std::string_view key)>;

    /// Asks the host's look-up. Without one it is the text in the user's defaults for the application on macOS, and
    /// none elsewhere. Thread: any.
    [[nodiscard]] static std::optional<std::string> text(std::string_view key);

    /// Installs the process-wide look-up; an empty one removes it. One that throws gives none for that time; the debug
    /// channel tells. Thread: any.
    static void setLookup(Lookup lookup);
};

}  // namespace Tarnwick_API::Platform
