// The part of libdispatch that the library is written to, declared as on macOS.
#pragma once

#include <cstdint>

using dispatch_queue_t = struct OpaqueDispatchQueue*;
using dispatch_function_t = void (*)(void*);
using dispatch_time_t = std::uint64_t;

inline constexpr dispatch_time_t DISPATCH_TIME_NOW = 0;
inline constexpr dispatch_time_t DISPATCH_TIME_FOREVER = ~dispatch_time_t{0};

extern "C" {

dispatch_queue_t dispatch_get_main_queue();
dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta);
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work);
void dispatch_after_f(dispatch_time_t when, dispatch_queue_t queue, void* context, dispatch_function_t work);

}  // extern "C"
