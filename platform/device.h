/// The model, the interface style and the system version of the device.
#pragma once

#include <cstdint>
#include <string>

namespace noctara {

class Device {
public:
    virtual ~Device() = default;

    /// The machine name of `uname`, for example "iPhone4,1".
    virtual std::string machine() = 0;

    /// The interface style of the device: 0 for a phone, other values for other devices.
    virtual std::int32_t userInterfaceIdiom() = 0;

    /// The system's CoreFoundation version (`kCFCoreFoundationVersionNumber`).
    virtual double coreFoundationVersionNumber() = 0;
};

} // namespace noctara
