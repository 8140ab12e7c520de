/// What the device says of itself.
#pragma once

#include <cstdint>
#include <string>

namespace noctara {

class Device {
public:
    virtual ~Device() = default;

    /// The machine name of `uname`, for example "iPhone4,1".
    virtual std::string machine() = 0;

    /// The style of the current device's interface: 0 for a phone's, other values for others.
    virtual std::int32_t userInterfaceIdiom() = 0;

    /// The system's CoreFoundation version (`kCFCoreFoundationVersionNumber`).
    virtual double coreFoundationVersionNumber() = 0;
};

} // namespace noctara
