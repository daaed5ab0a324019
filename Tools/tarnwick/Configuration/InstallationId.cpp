#include "Configuration/InstallationId.hpp"

#include "Failures/Failure.hpp"

#include <fstream>
#include <optional>
#include <string>
#include <system_error>

#include <unistd.h>

namespace TarnwickClient {

namespace {

std::optional<Tarnwick_API::Platform::Uuid> readId(const std::filesystem::path& file) {
    std::ifstream stream{file};
    if (!stream) {
        return std::nullopt;
    }
    std::string line;
    std::getline(stream, line);
    const auto id = Tarnwick_API::Platform::Uuid::fromString(line);
    if (!id) {
        throw Failure::local("The installation id in " + file.string() + " is none; remove the file to get a new one.");
    }
    return id;
}

}  // namespace

Tarnwick_API::Platform::Uuid keptInstallationId(const std::filesystem::path& file) {
    if (const auto id = readId(file)) {
        return *id;
    }
    const auto id = Tarnwick_API::Platform::Uuid::random();
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    const std::filesystem::path draft{file.string() + "." + std::to_string(::getpid())};
    {
        std::ofstream stream{draft};
        stream << id.uuidString() << '\n';
    }
    // A link never replaces the file that another process has just made: both go on with the same id.
    std::filesystem::create_hard_link(draft, file, error);
    std::error_code ignored;
    std::filesystem::remove(draft, ignored);
    const auto kept = readId(file);
    if (!kept) {
        throw Failure::local("The installation id can't be kept in " + file.string() + ": " + error.message());
    }
    return *kept;
}

}  // namespace TarnwickClient
