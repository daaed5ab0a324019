#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// A URL, kept exactly as written: nothing is resolved, re-encoded or folded.
class Url {
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
    [[nodiscard]] std::string_view scheme() const noexcept;
    /// The host without port, user and brackets; empty when there is none.
    [[nodiscard]] std::string_view host() const noexcept;
    /// The port as written; empty when there is none.
    [[nodiscard]] std::string_view port() const noexcept;

    friend bool operator==(const Url&, const Url&) = default;

private:
    explicit Url(std::string text) : text_{std::move(text)} {}

    std::string text_;
};

}  // namespace Tarnwick_API::Platform
