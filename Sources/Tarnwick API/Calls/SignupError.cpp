#include <Tarnwick_API/Calls/SignupError.hpp>

namespace Tarnwick_API {

std::string_view SignupError::localizedDescription() const noexcept {
    return value_ == usernameAlreadyExists ? "The user name is already taken." : "The account could not be created.";
}

}  // namespace Tarnwick_API
