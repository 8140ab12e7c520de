#include "platform/bluetooth.h"

#include "phones/springboard/private_classes.h"
#include "phones/springboard/services.h"

static BluetoothManager* sharedManager() {
    return [BluetoothManager sharedInstance];
}

namespace noctara {

namespace {

class SpringBoardBluetooth final : public BluetoothManager {
public:
    bool enabled() override { return [sharedManager() enabled]; }
    bool connected() override { return [sharedManager() connected]; }
    void setPowered(bool powered) override { [sharedManager() setPowered:powered]; }
    void setEnabled(bool enabled) override { [sharedManager() setEnabled:enabled]; }
};

} // namespace

BluetoothManager& springBoardBluetooth() {
    static auto& bluetooth = *new SpringBoardBluetooth;
    return bluetooth;
}

} // namespace noctara
