#include "Output/NumberText.hpp"

#include <array>
#include <cmath>
#include <cstdio>

namespace TarnwickClient {

std::string wholeNumberText(double value) {
    constexpr double greatestReadable = 1e15;
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), std::abs(value) < greatestReadable ? "%.0f" : "%g", value);
    return text.data();
}

}  // namespace TarnwickClient
