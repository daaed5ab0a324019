#include <Platform/Application/SystemPreferences.hpp>

namespace Tarnwick_API::Platform {

std::optional<std::string> systemPreference(std::string_view /*key*/) {
    return std::nullopt;
}

}  // namespace Tarnwick_API::Platform
