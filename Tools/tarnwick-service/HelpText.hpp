#pragma once

#include <string>

namespace TarnwickService {

/// What the program's help says behind its options: orders, faults, examples, exit statuses.
std::string helpText();

}  // namespace TarnwickService
