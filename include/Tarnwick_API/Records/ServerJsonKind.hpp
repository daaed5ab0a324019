#pragma once

namespace Tarnwick_API {

/// The record that an answer describes servers by: `ServerShort` or `ServerLong`.
enum class ServerJsonKind { short_, long_ };

}  // namespace Tarnwick_API
