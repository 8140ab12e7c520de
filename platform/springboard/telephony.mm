#include "platform/telephony.h"

#include "platform/springboard/private_classes.h"
#include "platform/springboard/services.h"

namespace noctara {

namespace {

class SpringBoardTelephony final : public Telephony, private TelephonyManager {
public:
    TelephonyManager* sharedTelephonyManager(ClassRef managerClass) override {
        manager = [static_cast<Class>(managerClass) sharedTelephonyManager];
        return manager ? this : nullptr;
    }

private:
    bool isInAirplaneMode() override { return [manager isInAirplaneMode]; }
    void setIsInAirplaneMode(bool airplane) override { [manager setIsInAirplaneMode:airplane]; }
    void updateAirplaneMode() override { [manager updateAirplaneMode]; }

    bool inCall() override { return [manager inCall]; }
    bool outgoingCallExists() override { return [manager outgoingCallExists]; }
    bool incomingCallExists() override { return [manager incomingCallExists]; }
    bool activeCallExists() override { return [manager activeCallExists]; }

    bool isNetworkTethering() override { return [manager isNetworkTethering]; }

    SBTelephonyManager* manager = nil;
};

} // namespace

Telephony& springBoardTelephony() {
    static SpringBoardTelephony telephony;
    return telephony;
}

} // namespace noctara
