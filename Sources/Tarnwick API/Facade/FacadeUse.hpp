#pragma once

#include <Tarnwick_API/Facade/TarnwickApi.hpp>

#include <memory>

namespace Tarnwick_API {

/// That a thread is inside the facade, which with its backend stays until then: what the library asks the host
/// meanwhile, and a completion, may drop the one and replace the other. In debug builds, ends the process when another
/// thread is inside at the same time.
class TarnwickApi::Use {
public:
    Use(const TarnwickApi& facade, const char* operation) noexcept;
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    ~Use();

private:
    std::shared_ptr<const TarnwickApi> facade_;
    std::shared_ptr<ApiCommunicateable> backend_;
    /// Not so for a use within another by the same thread.
    bool isOutermost_ = false;
};

}  // namespace Tarnwick_API
