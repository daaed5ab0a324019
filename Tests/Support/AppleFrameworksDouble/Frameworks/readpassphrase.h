// The part of the C library's header, which the cross compiler lacks, that the client is written to, declared as on macOS.
#pragma once

#include <stddef.h>

#define RPP_ECHO_OFF 0x00
#define RPP_ECHO_ON 0x01
#define RPP_REQUIRE_TTY 0x02

extern "C" char* readpassphrase(const char* prompt, char* buffer, size_t size, int flags);
