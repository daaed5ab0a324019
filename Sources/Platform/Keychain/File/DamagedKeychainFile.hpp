#pragma once

#include <Tarnwick_API/Platform/Keychain/KeychainStore.hpp>

#include <filesystem>

namespace Tarnwick_API::Platform {

struct SetAsideFile {
    KeychainStatus status = KeychainStatus::success;
    std::filesystem::path path = {};
};

/// Gives the damaged file, and a journal that belongs to it, a name beside its place that says what it is. Nobody else
/// may use the file meanwhile.
[[nodiscard]] SetAsideFile setAsideDamagedFile(const std::filesystem::path& file);

/// The latest one that was set aside; empty when there is none.
[[nodiscard]] std::filesystem::path latestDamagedFile(const std::filesystem::path& file);

}  // namespace Tarnwick_API::Platform
