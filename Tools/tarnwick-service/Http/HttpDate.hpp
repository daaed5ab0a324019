#pragma once

#include <ctime>
#include <string>

namespace TarnwickService {

/// "Sat, 21 Nov 2026 12:00:00 GMT"
std::string httpDate(std::time_t time);

}  // namespace TarnwickService
