#pragma once

#include <string>

namespace TarnwickClient {

/// The number without decimals; with a power of ten when it is too great to be read otherwise, and "nan" or "inf" for
/// what is none.
[[nodiscard]] std::string wholeNumberText(double value);

}  // namespace TarnwickClient
