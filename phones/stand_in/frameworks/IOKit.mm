#include "phones/springboard/private_functions.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/system_power.h"

using noctara::PhoneCall;

/// The registered callback. The phone sends its messages on the main thread, and the main run loop
/// delivers them.
static IOServiceInterestCallback interested = nullptr;
static void* refconOfInterested = nullptr;

static void deliver(void*, std::uint32_t service, std::uint32_t type, void* argument) {
    noctara::phoneOfThisProcess()->performOnMainRunLoop(
        [=] { interested(refconOfInterested, service, type, argument); });
}

io_connect_t IORegisterForSystemPower(void* refcon, IONotificationPortRef* port,
                                      IOServiceInterestCallback callback, io_object_t* notifier) {
    PhoneCall phone;
    if (!phone)
        return 0;
    noctara::NotificationPortRef registered = nullptr;
    const io_connect_t connection = phone->power.registerForSystemPower(deliver, registered);
    if (connection != 0) {
        interested = callback;
        refconOfInterested = refcon;
        *port = static_cast<IONotificationPortRef>(registered);
        *notifier = connection;
    }
    return connection;
}

CFRunLoopSourceRef IONotificationPortGetRunLoopSource(IONotificationPortRef port) {
    return reinterpret_cast<CFRunLoopSourceRef>(port);
}

int IOAllowPowerChange(io_connect_t connection, long notification) {
    if (PhoneCall phone; phone)
        phone->power.allowPowerChange(connection, notification);
    return 0;
}

int IOCancelPowerChange(io_connect_t connection, long notification) {
    if (PhoneCall phone; phone)
        phone->power.cancelPowerChange(connection, notification);
    return 0;
}
