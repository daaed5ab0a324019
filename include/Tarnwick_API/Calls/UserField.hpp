#pragma once

#include <Tarnwick_API/Export.hpp>

#include <optional>
#include <string_view>

namespace Tarnwick_API {

/// A part of the account that the user can change.
enum class UserField { username, password, email };

/// The parameter that carries the new value: "new_username", "new_password", "new_email".
[[nodiscard]] TARNWICK_API_EXPORT std::string_view updateParameter(UserField field) noexcept;

/// The parameter that carries the old value: "old_password" for the password, none for the others.
[[nodiscard]] TARNWICK_API_EXPORT std::optional<std::string_view> oldParameter(UserField field) noexcept;

}  // namespace Tarnwick_API
