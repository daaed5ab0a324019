#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace Tarnwick_API::Platform {

/// Overwrites memory that is about to be given back, in a way that no compiler leaves out.
void wipe(void* memory, std::size_t size) noexcept;

/// Overwrites a text with all its spare capacity, and leaves it empty.
void wipe(std::string& text) noexcept;

/// Memory that is overwritten before it is given back.
template <typename T>
struct WipingAllocator {
    using value_type = T;

    WipingAllocator() = default;
    template <typename Other>
    // NOLINTNEXTLINE(google-explicit-constructor): containers convert between the allocators of their parts
    WipingAllocator(const WipingAllocator<Other>& /*other*/) noexcept {}

    [[nodiscard]] T* allocate(std::size_t count) { return std::allocator<T>{}.allocate(count); }
    void deallocate(T* memory, std::size_t count) noexcept {
        wipe(memory, count * sizeof(T));
        std::allocator<T>{}.deallocate(memory, count);
    }

    friend bool operator==(const WipingAllocator& /*left*/, const WipingAllocator& /*right*/) noexcept { return true; }
};

/// A text that leaves no secret behind where it grows or goes, but for one of a few characters, which a text keeps
/// within itself.
using WipingText = std::basic_string<char, std::char_traits<char>, WipingAllocator<char>>;

}  // namespace Tarnwick_API::Platform
