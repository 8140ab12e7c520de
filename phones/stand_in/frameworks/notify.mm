/// System-wide notifications, and the main dispatch queue that delivers them.
#include "phones/stand_in/stand_in_phone.h"
#include "platform/notifications.h"

#include <Block.h>
#include <memory>
#include <notify.h>

using noctara::PhoneCall;

dispatch_queue_t dispatch_get_main_queue(void) {
    static char mainQueue;
    return reinterpret_cast<dispatch_queue_t>(&mainQueue);
}

std::uint32_t notify_post(const char* name) {
    if (PhoneCall phone; phone)
        phone->notifications.post(name);
    return 0;
}

std::uint32_t notify_register_dispatch(const char* name, int* token, dispatch_queue_t queue,
                                       notify_handler_t handler) {
    PhoneCall phone;
    if (!phone || queue != dispatch_get_main_queue())
        return 1;
    const notify_handler_t kept = Block_copy(handler);
    const auto given = std::make_shared<int>();
    *given = phone->notifications.registerOnMainQueue(name, [kept, given] {
        noctara::phoneOfThisProcess()->performOnMainRunLoop([&] { kept(*given); });
    });
    *token = *given;
    return 0;
}
