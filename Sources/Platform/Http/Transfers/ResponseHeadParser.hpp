#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace Tarnwick_API::Platform {

/// Collects the status and the headers of the final answer, line by line.
class ResponseHeadParser {
public:
    /// Takes one line as it came, its line end included. A status line starts over, so that the heads of interim
    /// answers vanish; what comes after the head of a final answer (trailers) is left out.
    void add(std::string_view line);

    /// Whether the empty line that ends the head of a final answer has come.
    [[nodiscard]] bool isComplete() const noexcept { return isComplete_; }

    [[nodiscard]] std::int64_t status() const noexcept { return status_; }
    [[nodiscard]] const HttpHeaders& headers() const noexcept { return headers_; }
    /// The value of the header of this name, in lower case; empty when there is none.
    [[nodiscard]] std::string_view value(std::string_view name) const noexcept;

    /// The answer's status and headers; leaves this empty.
    [[nodiscard]] HttpResponse take();

private:
    void addField(std::string_view line);

    std::int64_t status_ = 0;
    HttpHeaders headers_;
    /// The value that a continuation line would add to.
    std::string* lastValue_ = nullptr;
    bool isComplete_ = false;
};

}  // namespace Tarnwick_API::Platform
