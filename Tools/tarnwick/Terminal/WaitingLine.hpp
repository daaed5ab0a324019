#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace TarnwickClient {

/// A line on the terminal of standard error that shows that something is going on; gone when this ends. Without a
/// terminal it shows nothing.
class WaitingLine {
public:
    WaitingLine(std::string doing, bool isWanted);
    ~WaitingLine();
    WaitingLine(const WaitingLine&) = delete;
    WaitingLine& operator=(const WaitingLine&) = delete;

    [[nodiscard]] bool isShown() const noexcept { return isShown_; }

    /// Draws the line anew. `lastError` tells why the try of that number, the last one, failed.
    void update(std::int64_t attempt, const std::string& lastError);

private:
    std::string doing_;
    bool isShown_;
    bool isDrawn_ = false;
    std::size_t frame_ = 0;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace TarnwickClient
