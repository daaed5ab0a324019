#pragma once

#include "Program.hpp"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <Certificates/Certificates.hpp>

/// nghttpx, which speaks HTTP/2 with clients and HTTP/1.1 over TLS with the servers behind it.
class Http2Proxy {
public:
    struct Backend {
        /// The first one gets the requests to other hosts too.
        std::string host;
        std::uint16_t port = 0;
    };

    /// Shows `certificate`, keeps files in `folder`, and listens when this returns. Throws when it ends before.
    Http2Proxy(const std::filesystem::path& folder, const TarnwickService::Certificate& certificate,
               const std::vector<Backend>& backends, const std::vector<std::string>& options = {});

    [[nodiscard]] std::uint16_t port() const noexcept { return port_; }

private:
    std::uint16_t port_;
    std::optional<Program> program_;
};
