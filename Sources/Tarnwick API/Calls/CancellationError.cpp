#include <Tarnwick_API/Calls/CancellationError.hpp>

namespace Tarnwick_API {

std::string_view CancellationError::localizedDescription() const noexcept {
    return reason_ == Platform::StopReason::stopped ? "The request was cancelled." : "The request took too long.";
}

}  // namespace Tarnwick_API
