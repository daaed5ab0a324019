#include <Tarnwick_API/Calls/UserField.hpp>

namespace Tarnwick_API {

std::string_view updateParameter(UserField field) noexcept {
    switch (field) {
        case UserField::username:
            return "new_username";
        case UserField::password:
            return "new_password";
        case UserField::email:
            break;
    }
    return "new_email";
}

std::optional<std::string_view> oldParameter(UserField field) noexcept {
    if (field == UserField::password) {
        return "old_password";
    }
    return std::nullopt;
}

}  // namespace Tarnwick_API
