#include "Terminal/WaitingLine.hpp"

#include "Output/DisplayText.hpp"
#include "Terminal/Terminal.hpp"

#include <array>
#include <iostream>
#include <string_view>

#include <unistd.h>

namespace TarnwickClient {

namespace {

constexpr std::array<std::string_view, 4> frames{"|", "/", "-", "\\"};
constexpr std::string_view eraseLine = "\r\x1b[K";

}  // namespace

WaitingLine::WaitingLine(std::string doing, bool isWanted)
    : doing_{std::move(doing)}, isShown_{isWanted && isTerminal(STDERR_FILENO)} {
}

WaitingLine::~WaitingLine() {
    if (isDrawn_) {
        std::cerr << eraseLine << std::flush;
    }
}

void WaitingLine::update(std::int64_t attempt, const std::string& lastError) {
    if (!isShown_) {
        return;
    }
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_);
    std::string line{frames[frame_++ % frames.size()]};
    line += " " + doing_ + ", " + std::to_string(elapsed.count()) + " s";
    if (!lastError.empty()) {
        line += "; try " + std::to_string(attempt) + " failed (" + printable(lastError) + "), trying again";
    }
    std::cerr << eraseLine << shortened(line, terminalWidth(STDERR_FILENO).value_or(80) - 1) << std::flush;
    isDrawn_ = true;
}

}  // namespace TarnwickClient
