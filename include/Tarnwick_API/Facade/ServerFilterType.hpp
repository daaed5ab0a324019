#pragma once

namespace Tarnwick_API {

/// Kinds of server filter, for an application's own use; no operation takes or returns it.
enum class ServerFilterType { country, profile, proto, best };

}  // namespace Tarnwick_API
