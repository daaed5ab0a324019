#pragma once

namespace Tarnwick_API {

/// What the user wants a server for.
enum class ServerProfile { general, downloading, streaming };

}  // namespace Tarnwick_API
