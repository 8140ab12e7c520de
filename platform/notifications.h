/// System-wide (Darwin) notifications, which consist of a name alone, and notifications within the
/// process.
#pragma once

#include "platform/property_list.h"

#include <functional>

namespace noctara {

class Notifications {
public:
    virtual ~Notifications() = default;

    /// Calls `handler` on the main thread for every system-wide notification of that name, until
    /// the process ends (`notify_register_dispatch` on the main queue). Returns the registration
    /// token.
    virtual int registerOnMainQueue(const char* name, std::function<void()> handler) = 0;

    /// Posts a system-wide notification (`notify_post`). Any thread.
    virtual void post(const char* name) = 0;

    /// Posts a notification within the process, without an object
    /// (`postNotificationName:object:userInfo:` of the default center).
    virtual void postInProcess(const char* name, const Dictionary& userInfo) = 0;
};

} // namespace noctara
