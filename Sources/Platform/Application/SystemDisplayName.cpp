#include <Platform/Application/SystemDisplayName.hpp>

#include <Platform/Application/MachineInfo.hpp>

#include <array>
#include <cstdio>
#include <memory>

namespace Tarnwick_API::Platform {

namespace {

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

}  // namespace

std::optional<std::string> systemDisplayName() {
    return prettyHostName(machineInfoText());
}

}  // namespace Tarnwick_API::Platform
