#include "Terminal/Terminal.hpp"

#include "Failures/Failure.hpp"

#include <array>
#include <cerrno>

#ifdef __APPLE__
#include <readpassphrase.h>
#else
#include <bsd/readpassphrase.h>
#endif
#include <sys/ioctl.h>
#include <unistd.h>

namespace TarnwickClient {

namespace {

constexpr std::size_t longestAnswer = 1024;

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
    // One more than is taken, so that nothing is cut off in silence, and the end of the text.
    std::array<char, longestAnswer + 2> answer{};
    const auto flags = RPP_REQUIRE_TTY | (hidden ? RPP_ECHO_OFF : RPP_ECHO_ON);
    if (::readpassphrase(question.c_str(), answer.data(), answer.size(), flags) == nullptr) {
        throw Failure::usage(errno == ENOTTY ? "There is no terminal to ask on." : "The terminal can't be read.");
    }
    std::string text{answer.data()};
    if (text.size() > longestAnswer) {
        throw Failure::usage("More than " + std::to_string(longestAnswer) + " bytes were entered.");
    }
    return text;
}

}  // namespace TarnwickClient
