#pragma once

#include "FuzzTarget.hpp"
#include "TemporaryFolder.hpp"

#include <fstream>
#include <iterator>

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

/// Leaves nothing in the folder of `file` but that, with the bytes of a good one as the input damages them: it says how
/// many are left of them, then places and what gets written there.
inline std::string writeDamaged(const std::filesystem::path& file, std::string bytes, FuzzInput& input) {
    if (const auto size = input.number<std::uint16_t>(); size > 0 && size < bytes.size()) {
        bytes.resize(size);
    }
    while (!input.isEmpty()) {
        const auto place = input.number<std::uint16_t>() % bytes.size();
        bytes[place] = input.number<char>();
    }
    for (const auto& entry : std::filesystem::directory_iterator{file.parent_path()}) {
        std::filesystem::remove(entry);
    }
    std::ofstream{file, std::ios::binary} << bytes;
    return bytes;
}
