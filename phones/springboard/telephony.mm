#include "platform/telephony.h"

#include "phones/springboard/private_classes.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardTelephony final : public Telephony, private TelephonyManager {
public:
    TelephonyManager* sharedTelephonyManager(ClassRef managerClass) override {
        @autoreleasepool {
            manager = [static_cast<Class>(managerClass) sharedTelephonyManager];
        }
        return manager ? this : nullptr;
    }

private:
    bool isInAirplaneMode() override {
        @autoreleasepool {
            return [manager isInAirplaneMode];
        }
    }

    void setIsInAirplaneMode(bool airplane) override { [manager setIsInAirplaneMode:airplane]; }
    void updateAirplaneMode() override { [manager updateAirplaneMode]; }

    bool inCall() override {
        @autoreleasepool {
            return [manager inCall];
        }
    }

    bool outgoingCallExists() override {
        @autoreleasepool {
            return [manager outgoingCallExists];
        }
    }

    bool incomingCallExists() override {
        @autoreleasepool {
            return [manager incomingCallExists];
        }
    }

    bool activeCallExists() override {
        @autoreleasepool {
            return [manager activeCallExists];
        }
    }

    bool isNetworkTethering() override {
        @autoreleasepool {
            return [manager isNetworkTethering];
        }
    }

    /// SpringBoard keeps the one that it has. The main thread uses it only while the monitor thread
    /// waits.
    SBTelephonyManager* manager = nil;
};

} // namespace

Telephony& springBoardTelephony() {
    static auto& telephony = *new SpringBoardTelephony;
    return telephony;
}

} // namespace noctara
