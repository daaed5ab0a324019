// The part of the system's values that the library is written to, declared as on macOS.
#pragma once

#include <cstddef>

extern "C" int sysctlbyname(const char* name, void* old, std::size_t* oldLength, void* wanted,
                            std::size_t wantedLength);
