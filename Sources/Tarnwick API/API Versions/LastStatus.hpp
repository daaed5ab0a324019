#pragma once

#include <Tarnwick_API/Platform/Text/Bytes.hpp>
#include <Tarnwick_API/Records/Status.hpp>

#include <optional>

namespace Tarnwick_API {

/// The last status, with the text that said it. Applications ask for it all day, and mostly nothing has changed: while
/// the text is the same it is not decoded again.
class LastStatus {
public:
    /// The status that `text` says. Throws as the decoding does.
    [[nodiscard]] Status decode(const Platform::Bytes& text);

    void forget() noexcept;

private:
    Platform::Bytes text_;
    /// None while nothing is kept.
    std::optional<Status> status_;
};

}  // namespace Tarnwick_API
