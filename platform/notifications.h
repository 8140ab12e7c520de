/// Notifications: the system-wide (Darwin) ones, by name alone, and those inside the process.
#pragma once

#include "platform/property_list.h"

#include <functional>

namespace noctara {

class Notifications {
public:
    virtual ~Notifications() = default;

    /// Calls `handler` on the main thread at every system-wide notification of that name, for the
    /// life of the process (`notify_register_dispatch` on the main queue). The result is the
    /// registration's token.
    virtual int registerOnMainQueue(const char* name, std::function<void()> handler) = 0;

    /// Posts a system-wide notification (`notify_post`). Any thread.
    virtual void post(const char* name) = 0;

    /// Posts a notification inside the process, about no object
    /// (`postNotificationName:object:userInfo:` of the default center).
    virtual void postInProcess(const char* name, const Dictionary& userInfo) = 0;
};

} // namespace noctara
