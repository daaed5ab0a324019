#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <Platform/Http/Transfers/ContentDecoder.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace Tarnwick_API::Platform {

/// What the head of an answer says of the body behind it.
struct BodyFraming {
    /// The size of the body as it is sent.
    std::optional<std::uint64_t> length;
    bool isChunked = false;
    /// None when the body can't be decoded.
    std::optional<ContentCoding> coding = ContentCoding::identity;
};

/// Why a line of a head, its line end included, can't be relied on: it holds what some take for the end of a line, or
/// of the text. Empty when it can. A fixed text, as are all of these, which repeats nothing of the line.
[[nodiscard]] std::string_view lineFault(std::string_view line) noexcept;

/// Reads the framing from the fields of a whole head. Returns why they can't be relied on: libcurl guesses where they
/// contradict each other, and so may take the wrong bytes for the body. Empty when they can.
[[nodiscard]] std::string_view readFraming(const HttpHeaders& headers, BodyFraming& framing) noexcept;

}  // namespace Tarnwick_API::Platform
