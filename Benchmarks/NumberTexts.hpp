#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <system_error>

namespace Benchmarks {

/// Numbers as the service writes them, in texts; as an application would read them by hand.
/// @{
inline std::int64_t integerFrom(std::string_view text) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) {
        throw std::runtime_error{"no integer"};
    }
    return number;
}

inline std::optional<double> realFrom(std::string_view text) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional{number} : std::nullopt;
}
/// @}

}  // namespace Benchmarks
