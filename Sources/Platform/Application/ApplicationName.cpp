#include <Platform/Application/ApplicationName.hpp>

#include <Tarnwick_API/Platform/Application/Bundle.hpp>

#include <string_view>

namespace Tarnwick_API::Platform {

namespace {

bool isFileName(std::string_view text) {
    return !text.empty() && text != "." && text != ".." && text.find_first_of(std::string_view{"/\0", 2}) == text.npos;
}

}  // namespace

std::string applicationFolderName() {
    if (auto identifier = Bundle::main()->text("CFBundleIdentifier"); identifier && isFileName(*identifier)) {
        return *std::move(identifier);
    }
    return programName();
}

}  // namespace Tarnwick_API::Platform
