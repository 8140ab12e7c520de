/// The main dispatch queue. Its work is done by the main run loop.
#pragma once

extern "C" {

using dispatch_queue_t = struct dispatch_queue*;

dispatch_queue_t dispatch_get_main_queue(void);

} // extern "C"
