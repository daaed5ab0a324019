#include "Program.hpp"

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class Pipe {
public:
    Pipe() {
        if (::pipe2(ends_.data(), O_CLOEXEC) != 0) {
            throw std::system_error{errno, std::generic_category(), "pipe"};
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        ::close(ends_[0]);
        ::close(ends_[1]);
    }

    [[nodiscard]] int readingEnd() const { return ends_[0]; }
    [[nodiscard]] int writingEnd() const { return ends_[1]; }

private:
    std::array<int, 2> ends_{};
};

}  // namespace

Program::Program(const std::vector<std::string>& command, const std::string& input) {
    const Pipe in;
    const Pipe out;
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (const auto& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t parent = ::getpid();
    id_ = ::fork();
    if (id_ < 0) {
        throw std::system_error{errno, std::generic_category(), "fork"};
    }
    if (id_ == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() == parent) {
            ::dup2(in.readingEnd(), STDIN_FILENO);
            ::dup2(out.writingEnd(), STDOUT_FILENO);
            ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
            ::execvp(arguments[0], arguments.data());
        }
        ::_exit(127);
    }
    output_ = ::dup(out.readingEnd());
    ::fcntl(output_, F_SETFD, FD_CLOEXEC);
    // Held by this process too, the pipe takes a short input from it in any case.
    if (::write(in.writingEnd(), input.data(), input.size()) != static_cast<ssize_t>(input.size())) {
        throw std::system_error{errno, std::generic_category(), command.front()};
    }
}

Program::~Program() {
    if (id_ > 0) {
        ::kill(id_, SIGKILL);
        wait();
    }
    ::close(output_);
}

std::string Program::readLine() const {
    std::string line;
    for (char next = '\0'; ::read(output_, &next, 1) == 1 && next != '\n';) {
        line += next;
    }
    return line;
}

std::string Program::readAll() const {
    std::string text;
    std::array<char, 4096> buffer{};
    for (ssize_t size = 0; (size = ::read(output_, buffer.data(), buffer.size())) > 0;) {
        text.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return text;
}

bool Program::hasEnded() const {
    siginfo_t end{};
    ::waitid(P_PID, static_cast<id_t>(id_), &end, WEXITED | WNOHANG | WNOWAIT);
    return end.si_pid != 0;
}

int Program::wait() {
    int status = 0;
    while (::waitpid(id_, &status, 0) < 0 && errno == EINTR) {
    }
    id_ = -1;
    return status;
}

std::string outputOf(const std::vector<std::string>& command, const std::string& input) {
    Program program{command, input};
    auto text = program.readAll();
    if (program.wait() != 0) {
        throw std::runtime_error{command.front() + " failed, or is not installed"};
    }
    return text;
}
