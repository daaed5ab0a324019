#include <Platform/Application/SystemHostName.hpp>

#include <Platform/Application/SystemDisplayName.hpp>
#include <Platform/Text/Utf8.hpp>

#include <algorithm>
#include <array>

#include <unistd.h>

namespace Tarnwick_API::Platform {

namespace {

// A name ends up in JSON bodies, which hold nothing but UTF-8.
bool isUsable(std::string_view name) {
    return !name.empty() && isValidUtf8(name);
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

std::optional<std::string> displayHostName(std::optional<std::string> displayName, std::string_view networkName) {
    constexpr std::array<std::string_view, 3> meaningless{"localhost", "localhost.localdomain", "(none)"};
    if (displayName && isUsable(*displayName)) {
        return displayName;
    }
    if (!isUsable(networkName) || std::ranges::find(meaningless, networkName) != meaningless.end()) {
        return std::nullopt;
    }
    return std::string{networkName};
}

std::optional<std::string> systemHostName() {
    return displayHostName(systemDisplayName(), networkName());
}

}  // namespace Tarnwick_API::Platform
