#include "Output/ResultStream.hpp"

#include "Failures/Failure.hpp"

#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace TarnwickClient {

namespace {

/// As a program ends whose reader has gone. The signal may be ignored: by a parent, or since GLib ignores it for all.
void endSilently() {
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
}

}  // namespace

ResultStream::ResultStream(bool showsOtherLines)
    : descriptor_{::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)} {
    if (descriptor_ < 0) {
        throw Failure::local("There is no standard output.");
    }
    const auto nowhere = showsOtherLines ? -1 : ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    ::dup2(nowhere < 0 ? STDERR_FILENO : nowhere, STDOUT_FILENO);
    if (nowhere >= 0) {
        ::close(nowhere);
    }
}

ResultStream::~ResultStream() {
    ::close(descriptor_);
}

void ResultStream::write(std::string_view text) const {
    while (!text.empty()) {
        const auto count = ::write(descriptor_, text.data(), text.size());
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            if (errno == EPIPE) {
                endSilently();
            }
            throw Failure{ExitStatus::local, "output",
                          "The result can't be written: " + std::generic_category().message(errno)};
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

}  // namespace TarnwickClient
