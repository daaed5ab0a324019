#pragma once

// Said first and once, instead of by pages of what follows from it.
#if __cplusplus < 202002L
#error "Tarnwick_API needs C++20: build with -std=c++20 or later."
#endif
#ifndef __cpp_exceptions
#error "Tarnwick_API throws and catches exceptions, in its headers too: build without -fno-exceptions."
#endif
#ifndef __cpp_rtti
#error "Tarnwick_API tells decoders and errors apart by their run-time types: build without -fno-rtti."
#endif
