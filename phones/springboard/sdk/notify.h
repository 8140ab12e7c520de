/// System-wide notifications.
#pragma once

#include <cstdint>
#include <dispatch/dispatch.h>

extern "C" {

using notify_handler_t = void (^)(int token);

/// 0 is success.
std::uint32_t notify_post(const char* name);
std::uint32_t notify_register_dispatch(const char* name, int* token, dispatch_queue_t queue,
                                       notify_handler_t handler);

} // extern "C"
