#include "Http/HttpDate.hpp"

#include <array>

namespace TarnwickService {

std::string httpDate(std::time_t time) {
    std::tm parts{};
    gmtime_r(&time, &parts);
    std::array<char, 40> text{};
    const auto size = std::strftime(text.data(), text.size(), "%a, %d %b %Y %H:%M:%S GMT", &parts);
    return {text.data(), size};
}

}  // namespace TarnwickService
