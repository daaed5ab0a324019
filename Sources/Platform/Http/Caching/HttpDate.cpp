#include <Platform/Http/Caching/HttpDate.hpp>

#include <Platform/Text/AsciiCharacters.hpp>
#include <Platform/Text/AsciiText.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace Tarnwick_API::Platform {

namespace {

using std::chrono::sys_days;

constexpr std::array<std::string_view, 7> dayNames{"Monday", "Tuesday",  "Wednesday", "Thursday",
                                                   "Friday", "Saturday", "Sunday"};
constexpr std::array<std::string_view, 12> monthNames{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
constexpr std::size_t shortName = 3;

struct Fields {
    std::chrono::year year;
    std::chrono::month month;
    std::chrono::day day;
    std::chrono::hours hour;
    std::chrono::minutes minute;
    std::chrono::seconds second;
};

/// Reads a date from its start to its end. Once something is not as expected, all that follows fails too. In any case
/// of letters, as caches are to take dates.
class DateReader {
public:
    explicit DateReader(std::string_view text) : rest_{text} {}

    void text(std::string_view expected) { take(expected.size(), equalsIgnoringAsciiCase(front(expected), expected)); }

    [[nodiscard]] unsigned number(std::size_t digits) {
        const auto taken = rest_.substr(0, digits);
        unsigned value = 0;
        for (const char digit : taken) {
            value = value * 10 + static_cast<unsigned>(digit - '0');
        }
        take(digits, std::all_of(taken.begin(), taken.end(), isAsciiDigit));
        return value;
    }

    /// The place in `names`, of which the first `length` characters count.
    template <std::size_t size>
    std::size_t name(const std::array<std::string_view, size>& names, std::size_t length) {
        const auto found = std::find_if(names.begin(), names.end(), [&](std::string_view name) {
            const auto shortened = name.substr(0, length);
            return equalsIgnoringAsciiCase(front(shortened), shortened);
        });
        const bool isName = found != names.end();
        take(isName ? std::min(length, found->size()) : 0, isName);
        return static_cast<std::size_t>(found - names.begin());
    }

    [[nodiscard]] bool startsWith(char character) const { return rest_.starts_with(character); }
    [[nodiscard]] bool hasReadAll() const { return isGood_ && rest_.empty(); }

private:
    [[nodiscard]] std::string_view front(std::string_view like) const { return rest_.substr(0, like.size()); }

    void take(std::size_t size, bool isAsExpected) {
        isGood_ = isGood_ && isAsExpected && rest_.size() >= size;
        rest_.remove_prefix(std::min(size, rest_.size()));
    }

    std::string_view rest_;
    bool isGood_ = true;
};

void readMonth(DateReader& reader, Fields& fields) {
    fields.month = std::chrono::month{static_cast<unsigned>(reader.name(monthNames, shortName) + 1)};
}

void readYear(DateReader& reader, Fields& fields) {
    fields.year = std::chrono::year{static_cast<int>(reader.number(4))};
}

void readTime(DateReader& reader, Fields& fields) {
    fields.hour = std::chrono::hours{reader.number(2)};
    reader.text(":");
    fields.minute = std::chrono::minutes{reader.number(2)};
    reader.text(":");
    fields.second = std::chrono::seconds{reader.number(2)};
}

/// The year with these last two digits that is less than fifty years back, or at most fifty ahead.
std::chrono::year nearestYear(int lastDigits, std::chrono::year now) {
    const int first = static_cast<int>(now) - 49;
    return std::chrono::year{first + ((lastDigits - first) % 100 + 100) % 100};
}

/// "Sun, 06 Nov 1994 08:49:37 GMT"
void readFixed(DateReader& reader, Fields& fields) {
    reader.name(dayNames, shortName);
    reader.text(", ");
    fields.day = std::chrono::day{reader.number(2)};
    reader.text(" ");
    readMonth(reader, fields);
    reader.text(" ");
    readYear(reader, fields);
    reader.text(" ");
    readTime(reader, fields);
    reader.text(" GMT");
}

/// "Sunday, 06-Nov-94 08:49:37 GMT"
void readWithShortYear(DateReader& reader, Fields& fields, std::chrono::year now) {
    reader.name(dayNames, std::string_view::npos);
    reader.text(", ");
    fields.day = std::chrono::day{reader.number(2)};
    reader.text("-");
    readMonth(reader, fields);
    reader.text("-");
    fields.year = nearestYear(static_cast<int>(reader.number(2)), now);
    reader.text(" ");
    readTime(reader, fields);
    reader.text(" GMT");
}

/// "Sun Nov  6 08:49:37 1994"
void readWithoutZone(DateReader& reader, Fields& fields) {
    reader.name(dayNames, shortName);
    reader.text(" ");
    readMonth(reader, fields);
    reader.text(" ");
    const bool isPadded = reader.startsWith(' ');
    if (isPadded) {
        reader.text(" ");
    }
    fields.day = std::chrono::day{reader.number(isPadded ? 1 : 2)};
    reader.text(" ");
    readTime(reader, fields);
    reader.text(" ");
    readYear(reader, fields);
}

}  // namespace

std::optional<std::chrono::sys_seconds> parseHttpDate(std::string_view text, std::chrono::sys_seconds now) {
    const std::chrono::year_month_day today{std::chrono::floor<std::chrono::days>(now)};
    DateReader reader{text};
    Fields fields{};
    switch (text.find(',')) {
        case shortName:
            readFixed(reader, fields);
            break;
        case std::string_view::npos:
            readWithoutZone(reader, fields);
            break;
        default:
            readWithShortYear(reader, fields, today.year());
    }
    const std::chrono::year_month_day date{fields.year, fields.month, fields.day};
    // A minute may have a leap second.
    if (!reader.hasReadAll() || !date.ok() || fields.hour.count() > 23 || fields.minute.count() > 59 ||
        fields.second.count() > 60) {
        return std::nullopt;
    }
    return sys_days{date} + fields.hour + fields.minute + fields.second;
}

}  // namespace Tarnwick_API::Platform
