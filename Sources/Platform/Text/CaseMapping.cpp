#include <Platform/Text/CaseMapping.hpp>

#include <cstdint>

#include <unicode/locid.h>
#include <unicode/stringpiece.h>
#include <unicode/unistr.h>

namespace Tarnwick_API::Platform {

std::string upperCased(std::string_view text) {
    std::string result;
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())})
        .toUpper(icu::Locale::getRoot())
        .toUTF8String(result);
}

}  // namespace Tarnwick_API::Platform
