// The part of SystemConfiguration that the library is written to, declared as on macOS.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

using SCDynamicStoreRef = const struct OpaqueDynamicStore*;

extern "C" CFStringRef SCDynamicStoreCopyComputerName(SCDynamicStoreRef store, CFStringEncoding* nameEncoding);
