#include <Records/DateText.hpp>

#include <charconv>
#include <system_error>

namespace Tarnwick_API {

namespace {

constexpr unsigned char firstBeyondAscii = 0x80;

/// The tab and Unicode's space separators.
constexpr std::string_view blanks[] = {
    " ",
    "\t",
    "\xC2\xA0",
    "\xE1\x9A\x80",
    "\xE2\x80\x80",
    "\xE2\x80\x81",
    "\xE2\x80\x82",
    "\xE2\x80\x83",
    "\xE2\x80\x84",
    "\xE2\x80\x85",
    "\xE2\x80\x86",
    "\xE2\x80\x87",
    "\xE2\x80\x88",
    "\xE2\x80\x89",
    "\xE2\x80\x8A",
    "\xE2\x80\xAF",
    "\xE2\x81\x9F",
    "\xE3\x80\x80",
};

/// Reads a date from front to end. After the first mismatch nothing matches any more.
class DateScanner {
public:
    explicit DateScanner(std::string_view text) noexcept : rest_{text} {}

    [[nodiscard]] bool matched() const noexcept { return matched_; }

    unsigned number() noexcept {
        constexpr std::ptrdiff_t greatestLength = 9;
        skipBlanks();
        unsigned number = 0;
        const auto [end, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        const std::ptrdiff_t length = end - rest_.data();
        matched_ = matched_ && error == std::errc{} && length <= greatestLength;
        rest_.remove_prefix(static_cast<std::size_t>(length));
        return number;
    }

    void separator(char separator) noexcept {
        matched_ = matched_ && rest_.starts_with(separator);
        rest_.remove_prefix(rest_.empty() ? 0 : 1);
    }

    void blank() noexcept { matched_ = skipBlank() && matched_; }

    void end() noexcept {
        skipBlanks();
        matched_ = matched_ && rest_.empty();
    }

private:
    bool skipBlank() noexcept {
        // Each of them begins with a space, a tab or a byte beyond ASCII.
        const unsigned char first = rest_.empty() ? '0' : static_cast<unsigned char>(rest_.front());
        if (first > ' ' && first < firstBeyondAscii) {
            return false;
        }
        for (const std::string_view blank : blanks) {
            if (rest_.starts_with(blank)) {
                rest_.remove_prefix(blank.size());
                return true;
            }
        }
        return false;
    }

    void skipBlanks() noexcept {
        while (skipBlank()) {
        }
    }

    std::string_view rest_;
    bool matched_ = true;
};

enum class Clock { hours12, hours24 };

std::optional<std::chrono::sys_seconds> parseDate(std::string_view text, Clock clock) noexcept {
    DateScanner scanner{text};
    const unsigned year = scanner.number();
    scanner.separator('-');
    const unsigned month = scanner.number();
    scanner.separator('-');
    const unsigned day = scanner.number();
    scanner.blank();
    const unsigned hour = scanner.number();
    scanner.separator(':');
    const unsigned minute = scanner.number();
    scanner.separator(':');
    const unsigned second = scanner.number();
    scanner.end();

    // The calendar's types wrap greater numbers silently.
    const bool fits = scanner.matched() && year >= 1 && year <= 9999 && month <= 12 && day <= 31 &&
                      hour <= (clock == Clock::hours12 ? 12 : 23) && minute <= 59 && second <= 59;
    if (!fits) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year{static_cast<int>(year)}, std::chrono::month{month},
                                           std::chrono::day{day}};
    if (!date.ok()) {
        return std::nullopt;
    }
    return std::chrono::sys_days{date} + std::chrono::hours{clock == Clock::hours12 ? hour % 12 : hour} +
           std::chrono::minutes{minute} + std::chrono::seconds{second};
}

}  // namespace

std::optional<std::chrono::sys_seconds> parse24HourDate(std::string_view text) noexcept {
    return parseDate(text, Clock::hours24);
}

std::optional<std::chrono::sys_seconds> parse12HourDate(std::string_view text) noexcept {
    return parseDate(text, Clock::hours12);
}

}  // namespace Tarnwick_API
