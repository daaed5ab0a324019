#include <Tarnwick_API/Calls/ApiError.hpp>

namespace Tarnwick_API {

std::string_view ApiError::localizedDescription() const noexcept {
    return std::visit([](const auto& error) -> std::string_view { return error.localizedDescription(); }, value_);
}

}  // namespace Tarnwick_API
