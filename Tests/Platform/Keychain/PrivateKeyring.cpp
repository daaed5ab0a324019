#include "PrivateKeyring.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Started {
    pid_t process = -1;
    int output = -1;
};

/// A process that dies with this one, with `input` to read.
Started start(const std::vector<std::string>& command, const std::string& input, bool silent = true) {
    std::array<int, 2> in{};
    std::array<int, 2> out{};
    if (::pipe2(in.data(), O_CLOEXEC) != 0 || ::pipe2(out.data(), O_CLOEXEC) != 0) {
        throw std::system_error{errno, std::generic_category(), "pipe"};
    }
    std::vector<char*> arguments;
    for (const auto& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t parent = ::getpid();
    const pid_t process = ::fork();
    if (process < 0) {
        throw std::system_error{errno, std::generic_category(), "fork"};
    }
    if (process == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (::getppid() == parent) {
            ::dup2(in[0], STDIN_FILENO);
            ::dup2(out[1], STDOUT_FILENO);
            if (silent) {
                ::dup2(::open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
            }
            ::execvp(arguments[0], arguments.data());
        }
        ::_exit(127);
    }
    ::close(in[0]);
    ::close(out[1]);
    const bool isWritten = ::write(in[1], input.data(), input.size()) == static_cast<ssize_t>(input.size());
    ::close(in[1]);
    if (!isWritten && !input.empty()) {
        throw std::runtime_error{command.front() + " reads nothing"};
    }
    return {process, out[0]};
}

void end(pid_t& process, int signal = SIGKILL) {
    if (process > 0) {
        ::kill(process, signal);
        while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
        }
        process = -1;
    }
}

std::string readAll(int file) {
    std::string text;
    std::array<char, 4096> buffer{};
    ssize_t size = 0;
    while ((size = ::read(file, buffer.data(), buffer.size())) > 0) {
        text.append(buffer.data(), static_cast<std::size_t>(size));
    }
    ::close(file);
    return text;
}

std::string callOf(const std::string& method, const std::string& argument) {
    return outputOf({"gdbus", "call", "--session", "--dest", "org.freedesktop.secrets", "--object-path",
                     "/org/freedesktop/secrets", "--method", "org.freedesktop.Secret.Service." + method, argument});
}

}  // namespace

std::string outputOf(const std::vector<std::string>& command, const std::string& input) {
    const auto started = start(command, input, false);
    auto text = readAll(started.output);
    int status = 0;
    while (::waitpid(started.process, &status, 0) < 0 && errno == EINTR) {
    }
    if (status != 0) {
        throw std::runtime_error{command.front() + " failed, or is not installed"};
    }
    return text;
}

PrivateKeyring::PrivateKeyring() {
    const auto set = [](const char* name, const std::string& value) { ::setenv(name, value.c_str(), 1); };
    set("HOME", folder().string());
    set("XDG_RUNTIME_DIR", folder().string());
    set("XDG_DATA_HOME", (folder() / "data").string());
    set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder() / "session").string());
    for (const auto* const name : {"DISPLAY", "WAYLAND_DISPLAY", "GNOME_KEYRING_CONTROL"}) {
        ::unsetenv(name);
    }
    // Without folders of services: nothing is started unasked.
    std::ofstream{folder() / "bus.conf"} << "<busconfig><type>session</type><listen>unix:path="
                                         << (folder() / "session").string()
                                         << "</listen><policy context=\"default\"><allow send_destination=\"*\" "
                                            "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/>"
                                            "</policy></busconfig>";
    startBus();
}

PrivateKeyring::~PrivateKeyring() {
    endKeyring();
    endBus();
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void PrivateKeyring::startBus() {
    std::filesystem::remove(folder() / "session");
    const auto started =
        start({"dbus-daemon", "--nofork", "--print-address", "--config-file", (folder() / "bus.conf").string()}, {});
    bus_ = started.process;
    char first = '\0';
    const auto size = ::read(started.output, &first, 1);
    ::close(started.output);
    if (size != 1) {
        throw std::runtime_error{"dbus-daemon does not start, or is not installed"};
    }
}

void PrivateKeyring::endBus() {
    end(bus_);
}

void PrivateKeyring::startKeyring(const std::optional<std::string>& password) {
    std::vector<std::string> command{"gnome-keyring-daemon", "--foreground", "--components=secrets"};
    if (password) {
        command.emplace_back("--unlock");
    }
    const auto started = start(command, password.value_or(""));
    keyring_ = started.process;
    ::close(started.output);
    outputOf({"gdbus", "wait", "--session", "--timeout", "60", "org.freedesktop.secrets"});
}

void PrivateKeyring::endKeyring() {
    end(keyring_);
}

void PrivateKeyring::freezeKeyring() const {
    ::kill(keyring_, SIGSTOP);
    int status = 0;
    ::waitpid(keyring_, &status, WUNTRACED);
}

void PrivateKeyring::thawKeyring() const {
    ::kill(keyring_, SIGCONT);
}

void PrivateKeyring::lock() const {
    callOf("Lock", "[objectpath '/org/freedesktop/secrets/collection/login']");
}

void PrivateKeyring::unlock() const {
    outputOf({"gnome-keyring-daemon", "--unlock"}, "password");
}

int PrivateKeyring::count(const std::string& service) const {
    const auto paths = callOf("SearchItems", "{'service': '" + service + "'}");
    int number = 0;
    for (auto place = paths.find("/login/"); place != std::string::npos; place = paths.find("/login/", place + 1)) {
        ++number;
    }
    return number;
}
