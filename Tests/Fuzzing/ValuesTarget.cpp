// Numbers, dates and versions in texts: what is read is what the C library reads, and reads the same once it is
// written.

#include <Tarnwick_API/Records/ClientVersion.hpp>

#include <Platform/Text/Utf8.hpp>
#include <Records/DateText.hpp>
#include <Records/NumberText.hpp>

#include "FuzzTarget.hpp"

#include <cerrno>
#include <cmath>

using namespace Tarnwick_API;
using namespace Tarnwick_API::Platform;

void checkNumbers(const std::string& text) {
    const bool isSolid = !text.empty() && std::string_view{"\t\n\v\f\r "}.find(text.front()) == std::string_view::npos;
    char* end = nullptr;
    errno = 0;
    const std::int64_t integer = std::strtoll(text.c_str(), &end, 10);
    const bool isInteger = isSolid && end == text.data() + text.size() && errno != ERANGE;
    require(parseInt(text) == (isInteger ? std::optional{integer} : std::nullopt), "integers are the C library's");
    errno = 0;
    const auto expected = std::strtod(text.c_str(), &end);
    const bool isOutOfRange = errno == ERANGE && (expected == 0 || std::isinf(expected));
    const auto real = parseDouble(text);
    require(real.has_value() == (isSolid && end == text.data() + text.size() && !isOutOfRange), "reals are, too");
    require(!real || *real == expected || (std::isnan(*real) && std::isnan(expected)), "they have the same value");
}

std::string written(std::chrono::sys_seconds date) {
    const std::time_t time = date.time_since_epoch().count();
    std::tm parts{};
    gmtime_r(&time, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts)};
}

void fuzz(FuzzInput input) {
    const auto text = input.rest();
    checkNumbers(text);
    const auto date = parse24HourDate(text);
    const auto morning = parse12HourDate(text);
    require(!date || parse24HourDate(written(*date)) == date, "a date reads the same once it is written");
    require(!morning || parse12HourDate(written(*morning)) == morning, "so does one of twelve hours");
    require(!morning || *date == *morning || *date - *morning == std::chrono::hours{12}, "they differ at noon alone");
    const ClientVersion version{text};
    const ClientVersion again{std::to_string(version.major) + "." + std::to_string(version.minor) + "." +
                              std::to_string(version.revision) + "." + std::to_string(version.build.value())};
    require(again == version && again.build == version.build, "a version reads the same once it is written");
    const auto mended = replaceInvalidUtf8(text);
    require(isValidUtf8(mended) && mended.size() <= 3 * text.size(), "what is mended is UTF-8");
    require(isValidUtf8(text) == (mended == text), "what is UTF-8 needs no mending");
}
