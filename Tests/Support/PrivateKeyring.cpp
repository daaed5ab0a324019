#include "PrivateKeyring.hpp"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <vector>

#include <sys/wait.h>

namespace {

std::string callOf(const std::string& method, const std::string& argument) {
    return outputOf({"gdbus", "call", "--session", "--dest", "org.freedesktop.secrets", "--object-path",
                     "/org/freedesktop/secrets", "--method", "org.freedesktop.Secret.Service." + method, argument});
}

}  // namespace

PrivateKeyring::PrivateKeyring() {
    const auto set = [](const char* name, const std::string& value) { ::setenv(name, value.c_str(), 1); };
    set("HOME", folder().string());
    set("XDG_RUNTIME_DIR", folder().string());
    set("XDG_DATA_HOME", (folder() / "data").string());
    set("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + (folder() / "session").string());
    for (const auto* const name : {"DISPLAY", "WAYLAND_DISPLAY", "GNOME_KEYRING_CONTROL"}) {
        ::unsetenv(name);
    }
    // One folder of services, empty at first: nothing is started unasked.
    std::filesystem::create_directory(folder() / "services");
    std::ofstream{folder() / "bus.conf"}
        << "<busconfig><type>session</type><listen>unix:path=" << (folder() / "session").string()
        << "</listen><servicedir>" << (folder() / "services").string()
        << "</servicedir><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
    startBus();
}

PrivateKeyring::~PrivateKeyring() {
    endKeyring();
    endBus();
    ::unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void PrivateKeyring::startBus() {
    std::filesystem::remove(folder() / "session");
    const auto settings = (folder() / "bus.conf").string();
    bus_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--print-address", "--config-file", settings});
    if (bus_->readLine().empty()) {
        throw std::runtime_error{"dbus-daemon does not start, or is not installed"};
    }
}

void PrivateKeyring::endBus() {
    bus_.reset();
}

void PrivateKeyring::startKeyring(const std::optional<std::string>& password) {
    std::vector<std::string> command{"gnome-keyring-daemon", "--foreground", "--components=secrets"};
    if (password) {
        command.emplace_back("--unlock");
    }
    endKeyring();
    keyring_.emplace(command, password.value_or(""));
    outputOf({"gdbus", "wait", "--session", "--timeout", "60", "org.freedesktop.secrets"});
}

void PrivateKeyring::letTheBusStart(const std::string& program) const {
    std::ofstream{folder() / "services" / "org.freedesktop.secrets.service"}
        << "[D-BUS Service]\nName=org.freedesktop.secrets\nExec=" << program << '\n';
}

void PrivateKeyring::endKeyring() {
    keyring_.reset();
}

void PrivateKeyring::freezeKeyring() const {
    ::kill(keyringProcess(), SIGSTOP);
    int status = 0;
    ::waitpid(keyringProcess(), &status, WUNTRACED);
}

void PrivateKeyring::thawKeyring() const {
    ::kill(keyringProcess(), SIGCONT);
}

void PrivateKeyring::lock() const {
    callOf("Lock", "[objectpath '/org/freedesktop/secrets/collection/login']");
}

int PrivateKeyring::count(const std::string& value, const std::string& attribute) const {
    const auto paths = callOf("SearchItems", "{'" + attribute + "': '" + value + "'}");
    int number = 0;
    for (auto place = paths.find("/login/"); place != std::string::npos; place = paths.find("/login/", place + 1)) {
        ++number;
    }
    return number;
}
