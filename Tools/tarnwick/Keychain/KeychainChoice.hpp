#pragma once

#include "Configuration/Settings.hpp"

namespace TarnwickClient {

/// Makes the keychain that the settings name the process's own. Throws `Failure` when they contradict each other.
void installKeychain(const Settings& settings);

}  // namespace TarnwickClient
