#include <Platform/Text/Utf8.hpp>

#include <cstddef>

#include <unicode/utf8.h>

namespace Tarnwick_API::Platform {

// Not by simdjson, which asks an object of its own that is gone once another thread has called `exit`, while this one
// may still be in a completion.
bool isValidUtf8(std::string_view text) noexcept {
    UChar32 character = 0;
    for (std::size_t position = 0; position < text.size() && character >= 0;) {
        U8_NEXT(text.data(), position, text.size(), character);
    }
    return character >= 0;
}

std::string_view withoutByteOrderMark(std::string_view text) noexcept {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    return text.substr(text.starts_with(mark) ? mark.size() : 0);
}

std::string replaceInvalidUtf8(std::string_view text) {
    if (isValidUtf8(text)) {
        return std::string{text};
    }
    std::string mended;
    mended.reserve(text.size() + 8);
    for (std::size_t position = 0; position < text.size();) {
        const std::size_t start = position;
        UChar32 character = 0;
        U8_NEXT(text.data(), position, text.size(), character);
        mended.append(character < 0 ? std::string_view{"\xEF\xBF\xBD"} : text.substr(start, position - start));
    }
    return mended;
}

}  // namespace Tarnwick_API::Platform
