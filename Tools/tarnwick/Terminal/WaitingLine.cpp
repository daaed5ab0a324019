#include "Terminal/WaitingLine.hpp"

#include "Output/DisplayText.hpp"
#include "Terminal/Terminal.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <utility>

#include <unistd.h>

namespace TarnwickClient {

namespace {

constexpr std::array<std::string_view, 4> frames{"|", "/", "-", "\\"};
constexpr std::string_view eraseLine = "\r\x1b[K";

/// Columns left for the cursor, and for the "^C" that the terminal shows: a line that it breaks could not be erased.
constexpr std::size_t reserve = 3;

constexpr std::array signalsToShell{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

void listenFor(int signal);

extern "C" void eraseAndRaise(int signal) {
    const auto savedError = errno;
    static_cast<void>(::write(STDERR_FILENO, eraseLine.data(), eraseLine.size()));
    // SA_RESETHAND has put the default action back: the signal does what it would have done.
    ::raise(signal);
    // Only a program that was stopped gets here, when it goes on.
    listenFor(signal);
    errno = savedError;
}

void listenFor(int signal) {
    struct sigaction action {};
    action.sa_handler = eraseAndRaise;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER | SA_RESTART);
    ::sigaction(signal, &action, nullptr);
}

/// Whether the terminal can draw over what it shows.
bool canRedraw() {
    const auto* kind = std::getenv("TERM");
    return isTerminal(STDERR_FILENO) && kind != nullptr && *kind != '\0' && std::string_view{kind} != "dumb";
}

}  // namespace

/// Takes the line off the terminal when a signal gives it back to the shell.
class WaitingLine::SignalGuard {
public:
    SignalGuard() {
        for (std::size_t index = 0; index < signalsToShell.size(); ++index) {
            ::sigaction(signalsToShell[index], nullptr, &previous_[index]);
            if (previous_[index].sa_handler != SIG_IGN) {
                listenFor(signalsToShell[index]);
            }
        }
    }
    ~SignalGuard() {
        for (std::size_t index = 0; index < signalsToShell.size(); ++index) {
            ::sigaction(signalsToShell[index], &previous_[index], nullptr);
        }
    }
    SignalGuard(const SignalGuard&) = delete;
    SignalGuard& operator=(const SignalGuard&) = delete;

private:
    std::array<struct sigaction, signalsToShell.size()> previous_{};
};

WaitingLine::WaitingLine(std::string doing, bool isWanted)
    : doing_{std::move(doing)}, isShown_{isWanted && canRedraw()} {
}

WaitingLine::~WaitingLine() {
    if (guard_) {
        std::cerr << eraseLine << std::flush;
    }
}

void WaitingLine::update(std::int64_t attempt, const std::string& lastError) {
    if (!isShown_) {
        return;
    }
    if (!guard_) {
        guard_ = std::make_unique<SignalGuard>();
    }
    const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start_);
    std::string line{frames[frame_++ % frames.size()]};
    line += " " + doing_ + ", " + std::to_string(elapsed.count()) + " s";
    if (!lastError.empty()) {
        line += "; try " + std::to_string(attempt) + " failed (" + printable(lastError) + "), trying again";
    }
    const auto width = terminalWidth(STDERR_FILENO).value_or(80);
    std::cerr << eraseLine << shortened(line, width > reserve ? width - reserve : 0) << std::flush;
}

}  // namespace TarnwickClient
