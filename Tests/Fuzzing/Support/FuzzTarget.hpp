#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

/// An input, taken apart piece by piece. What is not there any more reads as zero or empty.
class FuzzInput {
public:
    explicit FuzzInput(std::string_view bytes) : rest_{bytes} {}

    [[nodiscard]] bool isEmpty() const { return rest_.empty(); }
    std::string rest() { return take(rest_.size()); }
    /// One of `count` choices, which seeds write as "0", "1" and so on.
    std::size_t choice(std::size_t count) { return static_cast<std::uint8_t>(number<char>() - '0') % count; }
    /// All before the next byte 0xFF, which no UTF-8 has.
    std::string text() {
        auto result = take(std::min(rest_.find('\xFF'), rest_.size()));
        take(1);
        return result;
    }
    template <class Number>
    Number number() {
        Number value{};
        const auto bytes = take(sizeof value);
        std::memcpy(&value, bytes.data(), bytes.size());
        return value;
    }

private:
    std::string take(std::size_t size) {
        std::string taken{rest_.substr(0, size)};
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest_;
};

/// Ends the program, as a find, unless the property holds.
inline void require(bool holds, const char* property) {
    if (!holds) {
        std::fprintf(stderr, "It does not hold that %s\n", property);
        std::abort();
    }
}

/// What each target does with an input.
void fuzz(FuzzInput input);

// NOLINTNEXTLINE(misc-definitions-in-headers): a target is one file, which includes this once
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz(FuzzInput{{reinterpret_cast<const char*>(data), size}});
    return 0;
}
