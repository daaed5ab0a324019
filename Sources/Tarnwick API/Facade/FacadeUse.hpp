#pragma once

#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include <memory>

namespace Tarnwick_API {

/// That a thread is inside the facade. In debug builds, ends the process when another one is at the same time.
class TarnwickApi::Use {
public:
    Use(const TarnwickApi& facade, const char* operation) noexcept;
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    ~Use();

private:
    /// Kept alive, as a completion may drop it. None for a use within another by the same thread.
    std::shared_ptr<const TarnwickApi> facade_;
};

}  // namespace Tarnwick_API
