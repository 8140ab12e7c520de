#include "platform/system_power.h"

#include "phones/springboard/private_functions.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardPower final : public SystemPower {
public:
    PowerConnection registerForSystemPower(PowerCallback callback,
                                           NotificationPortRef& port) override {
        IONotificationPortRef notifications = nullptr;
        io_object_t notifier = 0;
        const io_connect_t connection =
            IORegisterForSystemPower(nullptr, &notifications, callback, &notifier);
        if (connection != 0)
            port = notifications;
        return connection;
    }

    RunLoopRef currentRunLoop() override { return CFRunLoopGetCurrent(); }

    void addSource(RunLoopRef runLoop, NotificationPortRef port) override {
        CFRunLoopAddSource(
            static_cast<CFRunLoopRef>(runLoop),
            IONotificationPortGetRunLoopSource(static_cast<IONotificationPortRef>(port)),
            kCFRunLoopCommonModes);
    }

    void allowPowerChange(PowerConnection connection, std::intptr_t notification) override {
        IOAllowPowerChange(connection, notification);
    }

    void cancelPowerChange(PowerConnection connection, std::intptr_t notification) override {
        IOCancelPowerChange(connection, notification);
    }
};

} // namespace

SystemPower& springBoardPower() {
    static auto& power = *new SpringBoardPower;
    return power;
}

} // namespace noctara
