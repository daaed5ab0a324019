#pragma once

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include <stdlib.h>

/// A folder of its own for one test, which goes with all that is in it.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = inMemory()) {
        auto pattern = (parent / "tarnwick-tests-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error{errno, std::generic_category(), pattern};
        }
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

private:
    /// In memory where the system has such a place: the death of a process, unlike that of a machine, loses nothing
    /// that it wrote, and thousands of flushes take their time on a disk.
    static std::filesystem::path inMemory() {
        return std::filesystem::is_directory("/dev/shm") ? "/dev/shm" : std::filesystem::temp_directory_path();
    }

    std::filesystem::path path_;
};
