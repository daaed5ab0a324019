#pragma once

#include <Tarnwick_API/Platform/Http/HttpSession.hpp>

#include <memory>

namespace Tarnwick_API {

/// The HTTP session of the whole process. Thread: any.
class SharedSession {
public:
    /// Made on first use from `defaultConfiguration`.
    [[nodiscard]] static std::shared_ptr<Platform::HttpSession> get();

    /// Replaces it; none makes the next use create it anew.
    static void set(std::shared_ptr<Platform::HttpSession> session);

    /// Exempts the live and beta fallback address from the check of the certificate's name.
    [[nodiscard]] static Platform::HttpSessionConfiguration defaultConfiguration();
};

}  // namespace Tarnwick_API
