/// The home screen's telephony manager (`SBTelephonyManager`). Call the setters and
/// `updateAirplaneMode` on the main thread. The queries may be called on any thread.
#pragma once

#include "platform/host_process.h"

namespace noctara {

class TelephonyManager {
public:
    virtual ~TelephonyManager() = default;

    virtual bool isInAirplaneMode() = 0;

    /// Sets the flag. `updateAirplaneMode` makes it take effect.
    virtual void setIsInAirplaneMode(bool airplane) = 0;
    virtual void updateAirplaneMode() = 0;

    virtual bool inCall() = 0;
    virtual bool outgoingCallExists() = 0;
    virtual bool incomingCallExists() = 0;
    virtual bool activeCallExists() = 0;

    virtual bool isNetworkTethering() = 0;
};

class Telephony {
public:
    virtual ~Telephony() = default;

    /// `sharedTelephonyManager` of the class found by the name "SBTelephonyManager". Null if there
    /// is no manager or the class is null.
    virtual TelephonyManager* sharedTelephonyManager(ClassRef managerClass) = 0;
};

} // namespace noctara
