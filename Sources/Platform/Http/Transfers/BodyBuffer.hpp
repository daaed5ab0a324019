#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>

#include <cstddef>
#include <string_view>

namespace Tarnwick_API::Platform {

/// Collects a body up to a limit, with spare capacity behind its end so that a JSON parser can read it in place.
class BodyBuffer {
public:
    /// Starts an empty body of at most `limit` bytes.
    void begin(std::size_t limit);

    /// Makes room for a body announced to have `size` bytes, as far as an announcement is trusted.
    void expect(std::size_t size);

    /// Returns false, and takes nothing, when the limit would be passed.
    [[nodiscard]] bool append(std::string_view bytes);

    [[nodiscard]] bool isEmpty() const noexcept { return bytes_.empty(); }

    /// Leaves this empty.
    [[nodiscard]] Bytes take();

private:
    void makeRoom(std::size_t size);

    Bytes bytes_;
    std::size_t limit_ = 0;
};

}  // namespace Tarnwick_API::Platform
