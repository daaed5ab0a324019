#pragma once

#include <Tarnwick_API/Export.hpp>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace Tarnwick_API::Platform {

/// A URL, kept exactly as written: nothing is resolved, re-encoded or folded.
class TARNWICK_API_EXPORT Url {
public:
    /// Reads `text`. Letters, digits, ``-_.!~*'()$&+,/:;=?@``, `%` before two hex digits, `[`, `]` and one `#` are
    /// legal; any other character, and the empty text, give none. A missing host or a relative URL is no error.
    [[nodiscard]] static std::optional<Url> fromString(std::string_view text);

    /// This URL with `component` appended to its path after a separating "/". Characters that a path may not hold,
    /// "%" always, ";" and "?" are percent-encoded; a "/" inside is kept and makes further segments.
    [[nodiscard]] Url appendingPathComponent(std::string_view component) const;

    /// This URL with `query`, already percent-encoded, after its query with "&", or as its query; a fragment stays
    /// last. An empty `query` changes nothing.
    [[nodiscard]] Url appendingQuery(std::string_view query) const;

    [[nodiscard]] const std::string& absoluteString() const noexcept { return text_; }

    /// The scheme as written, without the colon; empty when there is none.
    [[nodiscard]] std::string_view scheme() const noexcept {
        return std::string_view{text_}.substr(0, parts_.schemeSize);
    }
    /// The host without port, user and brackets; empty when there is none.
    [[nodiscard]] std::string_view host() const noexcept { return parts_.host.of(text_); }
    /// The port as written; empty when there is none.
    [[nodiscard]] std::string_view port() const noexcept { return parts_.port.of(text_); }

    friend bool operator==(const Url& one, const Url& other) noexcept { return one.text_ == other.text_; }

private:
    struct Part {
        std::size_t begin = 0;
        std::size_t size = 0;

        /// Empty where the text has been moved away.
        [[nodiscard]] std::string_view of(std::string_view text) const noexcept {
            text.remove_prefix((std::min)(begin, text.size()));
            return text.substr(0, size);
        }
    };
    /// Where a URL's parts lie in its text.
    struct Parts {
        std::size_t schemeSize = 0;
        Part host;
        Part port;
        std::size_t pathBegin = 0;
    };

    explicit Url(std::string text);
    Url(std::string text, const Parts& parts) : text_{std::move(text)}, parts_{parts} {}

    void findHostAndPort(std::size_t authorityBegin);

    std::string text_;
    Parts parts_;
};

}  // namespace Tarnwick_API::Platform
