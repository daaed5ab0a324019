#pragma once

#include <Tarnwick_API/Export.hpp>

namespace Tarnwick_API {

/// Something that lasts until it is disposed of, such as a subscription to an `Event`.
class TARNWICK_API_EXPORT Disposable {
public:
    Disposable() = default;
    Disposable(const Disposable&) = delete;
    Disposable& operator=(const Disposable&) = delete;
    /// Destroying it does not dispose of it.
    virtual ~Disposable() = default;

    /// Ends it. Harmless when it has ended before.
    virtual void dispose() = 0;
};

}  // namespace Tarnwick_API
