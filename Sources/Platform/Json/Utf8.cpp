#include <Platform/Json/Utf8.hpp>

#include <simdjson.h>

namespace Platform {

bool isValidUtf8(std::string_view text) noexcept {
    return simdjson::validate_utf8(text.data(), text.size());
}

}  // namespace Platform
