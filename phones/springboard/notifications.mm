#include "platform/notifications.h"

#include "phones/springboard/property_list_values.h"
#include "phones/springboard/services.h"

#include <notify.h>
#include <utility>

namespace noctara {

namespace {

class SpringBoardNotifications final : public Notifications {
public:
    int registerOnMainQueue(const char* name, std::function<void()> handler) override {
        int token = 0;
        const std::function<void()> called = std::move(handler);
        notify_register_dispatch(name, &token, dispatch_get_main_queue(), ^(int) {
          called();
        });
        return token;
    }

    void post(const char* name) override { notify_post(name); }

    void postInProcess(const char* name, const Dictionary& userInfo) override {
        @autoreleasepool {
            [[NSNotificationCenter defaultCenter]
                postNotificationName:[NSString stringWithUTF8String:name]
                              object:nil
                            userInfo:objectOf(userInfo)];
        }
    }
};

} // namespace

Notifications& springBoardNotifications() {
    static auto& notifications = *new SpringBoardNotifications;
    return notifications;
}

} // namespace noctara
