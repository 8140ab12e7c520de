/// The home screen's charger state (`SBUIController`).
#pragma once

#include "platform/host_process.h"

namespace noctara {

class Charger {
public:
    virtual ~Charger() = default;

    /// The shared `SBUIController`, of the class found by that name. Null for a null class.
    virtual ObjectRef sharedController(ClassRef controllerClass) = 0;

    /// Whether the phone is on external power. False for a null controller. Call it on the main
    /// thread.
    virtual bool isOnAC(ObjectRef controller) = 0;
};

} // namespace noctara
