#pragma once

namespace AppleFrameworksDouble {

/// Gives back what the test made known.
void forgetKnown();

/// Whether there was any.
bool forgetDispatchedWork();

}  // namespace AppleFrameworksDouble
