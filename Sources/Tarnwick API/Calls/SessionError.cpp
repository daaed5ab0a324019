#include <Tarnwick_API/Calls/SessionError.hpp>

namespace Tarnwick_API {

std::string_view SessionError::localizedDescription() const noexcept {
    switch (value_) {
        case nobodySignedIn:
            return "Nobody is signed in.";
        case keychainLocked:
            return "The keychain is locked.";
        case keychainUnavailable:
            break;
    }
    return "The keychain can't be read.";
}

}  // namespace Tarnwick_API
