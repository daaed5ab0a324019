#include "Terminal/Terminal.hpp"

#include "Failures/Failure.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace TarnwickClient {

namespace {

class TerminalDevice {
public:
    TerminalDevice() : descriptor_{::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY)} {}
    ~TerminalDevice() {
        if (descriptor_ >= 0) {
            ::close(descriptor_);
        }
    }
    TerminalDevice(const TerminalDevice&) = delete;
    TerminalDevice& operator=(const TerminalDevice&) = delete;

    [[nodiscard]] int descriptor() const noexcept { return descriptor_; }

private:
    int descriptor_;
};

constexpr std::array endingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP};

// What the signal handler needs; a handler can be given no argument.
volatile std::sig_atomic_t handlerDescriptor = -1;
termios handlerAttributes{};

extern "C" void restoreTerminalAndRaise(int signal) {
    const auto savedError = errno;
    ::tcsetattr(handlerDescriptor, TCSAFLUSH, &handlerAttributes);
    // SA_RESETHAND has put the default action back: the signal does what it would have done.
    ::raise(signal);
    errno = savedError;
}

/// Switches the echo off as long as it lives.
class HiddenInput {
public:
    explicit HiddenInput(int descriptor) : descriptor_{descriptor} {
        if (::tcgetattr(descriptor, &handlerAttributes) != 0) {
            throw Failure::local("The terminal can't be told to hide the password.");
        }
        handlerDescriptor = descriptor;
        struct sigaction action {};
        action.sa_handler = restoreTerminalAndRaise;
        action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
        for (std::size_t index = 0; index < endingSignals.size(); ++index) {
            ::sigaction(endingSignals[index], nullptr, &previous_[index]);
            if (previous_[index].sa_handler != SIG_IGN) {
                ::sigaction(endingSignals[index], &action, nullptr);
            }
        }
        auto attributes = handlerAttributes;
        attributes.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHOE | ECHOK);
        attributes.c_lflag |= ECHONL;
        if (::tcsetattr(descriptor, TCSAFLUSH, &attributes) != 0) {
            restore();
            throw Failure::local("The terminal can't be told to hide the password.");
        }
    }
    ~HiddenInput() { restore(); }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

private:
    void restore() noexcept {
        ::tcsetattr(descriptor_, TCSAFLUSH, &handlerAttributes);
        for (std::size_t index = 0; index < endingSignals.size(); ++index) {
            ::sigaction(endingSignals[index], &previous_[index], nullptr);
        }
    }

    int descriptor_;
    std::array<struct sigaction, endingSignals.size()> previous_{};
};

std::string readLine(int descriptor) {
    std::string line;
    for (char character = '\0';;) {
        const auto count = ::read(descriptor, &character, 1);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0 || (count == 0 && line.empty())) {
            throw Failure::usage("Nothing was entered.");
        }
        if (count == 0 || character == '\n') {
            return line;
        }
        line += character;
    }
}

void writeText(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const auto count = ::write(descriptor, text.data(), text.size());
        if (count < 0 && errno != EINTR) {
            return;
        }
        text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
}

}  // namespace

std::optional<std::size_t> terminalWidth(int descriptor) {
    winsize size{};
    if (!isTerminal(descriptor) || ::ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
        return std::nullopt;
    }
    return size.ws_col;
}

bool isTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

std::string promptOnTerminal(const std::string& question, bool hidden) {
    const TerminalDevice terminal;
    if (terminal.descriptor() < 0) {
        throw Failure::usage("There is no terminal to ask on.");
    }
    if (!hidden) {
        writeText(terminal.descriptor(), question);
        return readLine(terminal.descriptor());
    }
    const HiddenInput hiddenInput{terminal.descriptor()};
    writeText(terminal.descriptor(), question);
    return readLine(terminal.descriptor());
}

}  // namespace TarnwickClient
