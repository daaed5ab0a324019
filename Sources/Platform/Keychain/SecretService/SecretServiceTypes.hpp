#pragma once

#include <glib-object.h>

namespace Tarnwick_API::Platform {

// Types of SecretService that work on the connection they are given; libsecret's own insists on the one that the whole
// process shares.

[[nodiscard]] GType promptingSecretServiceType();

/// Raises no prompt: an operation that needs one fails as on a locked collection. libsecret shows prompts by itself,
/// also while it creates and deletes items.
[[nodiscard]] GType silentSecretServiceType();

}  // namespace Tarnwick_API::Platform
