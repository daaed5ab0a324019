#include <Records/NumberText.hpp>

#include <Tarnwick_API/Records/JsonDecodeError.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <new>
#include <string>
#include <system_error>
#include <version>

#if __has_include(<xlocale.h>)
#include <xlocale.h>
#else
#include <locale.h>
#endif

namespace Tarnwick_API {

namespace {

/// The application may have set any locale, and some write a decimal comma. Lives as long as the process.
locale_t cLocale() {
    static const locale_t locale = [] {
        const locale_t created = newlocale(LC_ALL_MASK, "C", nullptr);
        if (created == nullptr) {
            throw std::bad_alloc{};
        }
        return created;
    }();
    return locale;
}

/// `text` has a NUL behind its last character and none before.
bool parseTerminated(const char* text, std::size_t length, double& number) {
    const int errorBefore = errno;
    errno = 0;
    char* end = nullptr;
    const double parsed = strtod_l(text, &end, cLocale());
    const bool outOfRange = errno == ERANGE && (parsed == 0 || std::isinf(parsed));
    errno = errorBefore;
    if (end != text + length || outOfRange) {
        return false;
    }
    number = parsed;
    return true;
}

/// "-33.8688" and the like. So few digits and the power of ten are exact as they are, so their quotient is the nearest
/// number. False for any other form, which may be a number all the same.
bool parsePlainDecimal(std::string_view text, double& number) noexcept {
    static constexpr std::array powersOfTen{1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6, 1e7,
                                            1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};
    const bool isNegative = text.starts_with('-');
    const char* position = text.data() + (isNegative ? 1 : 0);
    const char* const end = text.data() + text.size();
    if (end - position > static_cast<std::ptrdiff_t>(powersOfTen.size())) {
        return false;
    }
    std::int64_t digits = 0;
    const auto takeDigits = [&] {
        const char* const begin = position;
        for (; position != end && *position >= '0' && *position <= '9'; ++position) {
            digits = 10 * digits + (*position - '0');
        }
        return static_cast<std::size_t>(position - begin);
    };
    std::size_t fraction = 0;
    if (takeDigits() == 0) {
        return false;
    }
    if (position != end) {
        if (*position++ != '.') {
            return false;
        }
        fraction = takeDigits();
        if (fraction == 0 || position != end) {
            return false;
        }
    }
    number = static_cast<double>(digits) / powersOfTen[fraction];
    number = isNegative ? -number : number;
    return true;
}

}  // namespace

bool parseInt(std::string_view text, std::int64_t& number) noexcept {
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        if (text.starts_with('-')) {
            return false;
        }
    }
    const char* end = text.data() + text.size();
    std::int64_t parsed = 0;
    const auto result = std::from_chars(text.data(), end, parsed);
    if (result.ec != std::errc{} || result.ptr != end) {
        return false;
    }
    number = parsed;
    return true;
}

bool parseDouble(std::string_view text, double& number) {
    if (parsePlainDecimal(text, number)) {
        return true;
    }
#ifdef __cpp_lib_to_chars
    // Where the standard library has it, this is some five times as fast. It knows every form but "+1" and "0x1".
    double parsed = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (result.ec == std::errc{} && result.ptr == text.data() + text.size()) {
        number = parsed;
        return true;
    }
#endif
    constexpr std::string_view blanks = "\t\n\v\f\r ";
    if (text.empty() || blanks.find(text.front()) != std::string_view::npos ||
        text.find('\0') != std::string_view::npos) {
        return false;
    }
    std::array<char, 64> terminated{};
    if (text.size() < terminated.size()) {
        std::copy(text.begin(), text.end(), terminated.begin());
        return parseTerminated(terminated.data(), text.size(), number);
    }
    return parseTerminated(std::string{text}.c_str(), text.size(), number);
}

std::int64_t requireIntText(const Platform::JsonObject& object, std::string_view key) {
    std::int64_t number = 0;
    if (!parseInt(object.require<std::string_view>(key), number)) {
        throw JsonDecodeError{JsonDecodeError::IntParsingFailed};
    }
    return number;
}

}  // namespace Tarnwick_API
