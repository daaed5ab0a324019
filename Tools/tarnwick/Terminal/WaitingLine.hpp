#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace TarnwickClient {

/// A line on the terminal of standard error that shows that something is going on; gone when this ends, and when a
/// signal ends or stops the program. Without a terminal that can draw it anew it shows nothing.
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
    class SignalGuard;

    std::string doing_;
    bool isShown_;
    std::size_t frame_ = 0;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    /// There once the line has been drawn.
    std::unique_ptr<SignalGuard> guard_;
};

}  // namespace TarnwickClient
