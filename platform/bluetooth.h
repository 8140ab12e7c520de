/// The Bluetooth manager (`BluetoothManager` `sharedInstance`).
#pragma once

namespace noctara {

class BluetoothManager {
public:
    virtual ~BluetoothManager() = default;

    virtual bool enabled() = 0;

    /// Whether a device is connected.
    virtual bool connected() = 0;

    virtual void setPowered(bool powered) = 0;
    virtual void setEnabled(bool enabled) = 0;
};

} // namespace noctara
