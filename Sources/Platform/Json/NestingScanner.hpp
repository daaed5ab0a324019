#pragma once

#include <cstddef>

namespace Tarnwick_API::Platform {

/// How deep in containers a JSON text is at each of its characters. Of a text that is no JSON it says something, but
/// nothing in particular.
class NestingScanner {
public:
    void take(char character) noexcept {
        if (isInText_) {
            isInText_ = isEscaped_ || character != '"';
            isEscaped_ = !isEscaped_ && character == '\\';
        } else if (character == '"') {
            isInText_ = true;
        } else if (character == '{' || character == '[') {
            ++depth_;
        } else if ((character == '}' || character == ']') && depth_ > 0) {
            --depth_;
        }
    }

    [[nodiscard]] std::size_t depth() const noexcept { return depth_; }
    [[nodiscard]] bool isInText() const noexcept { return isInText_; }

private:
    std::size_t depth_ = 0;
    bool isInText_ = false;
    bool isEscaped_ = false;
};

}  // namespace Tarnwick_API::Platform
