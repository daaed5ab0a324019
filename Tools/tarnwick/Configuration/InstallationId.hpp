#pragma once

#include <Tarnwick_API/Platform/Application/Uuid.hpp>

#include <filesystem>

namespace TarnwickClient {

/// The id that `file` keeps; made and kept on first use. Throws `Failure` when the file holds something else or can be
/// neither read nor made.
[[nodiscard]] Tarnwick_API::Platform::Uuid keptInstallationId(const std::filesystem::path& file);

}  // namespace TarnwickClient
