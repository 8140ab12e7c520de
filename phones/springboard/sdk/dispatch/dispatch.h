/// The main dispatch queue. Its work is done by the main run loop.
#pragma once

extern "C" {

using dispatch_queue_t = struct dispatch_queue*;

#ifdef __APPLE__
/// The main queue itself. The phone has no function that returns it.
extern struct dispatch_queue _dispatch_main_q;

inline dispatch_queue_t dispatch_get_main_queue(void) {
    return &_dispatch_main_q;
}
#else
dispatch_queue_t dispatch_get_main_queue(void);
#endif

} // extern "C"
