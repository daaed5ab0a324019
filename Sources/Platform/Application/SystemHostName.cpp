#include <Platform/Application/SystemHostName.hpp>

#include <Platform/Application/MachineInfo.hpp>
#include <Platform/Text/Utf8.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

// A name ends up in JSON bodies, which hold nothing but UTF-8.
bool isUsable(std::string_view name) {
    return !name.empty() && isValidUtf8(name);
}

std::string machineInfoText() {
    // Not a stream of this library's, which programs that the host executes meanwhile would inherit.
    struct Close {
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): this is the end that its owner gives it
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };
    const std::unique_ptr<std::FILE, Close> file{std::fopen("/etc/machine-info", "rbe")};
    std::string text;
    std::array<char, 4096> buffer{};
    while (file) {
        const auto size = std::fread(buffer.data(), 1, buffer.size(), file.get());
        if (size == 0) {
            break;
        }
        text.append(buffer.data(), size);
    }
    return text;
}

std::string networkName() {
    // One more byte than is offered: a name that is cut off comes without its terminator.
    std::array<char, 257> buffer{};
    if (gethostname(buffer.data(), buffer.size() - 1) != 0) {
        return {};
    }
    return buffer.data();
}

}  // namespace

std::optional<std::string> displayHostName(std::string_view machineInfo, std::string_view networkName) {
    constexpr std::array<std::string_view, 3> meaningless{"localhost", "localhost.localdomain", "(none)"};
    if (auto name = prettyHostName(machineInfo); name && isUsable(*name)) {
        return name;
    }
    if (!isUsable(networkName) || std::ranges::find(meaningless, networkName) != meaningless.end()) {
        return std::nullopt;
    }
    return std::string{networkName};
}

std::optional<std::string> systemHostName() {
    return displayHostName(machineInfoText(), networkName());
}

}  // namespace Tarnwick_API::Platform
