/// How the stand-in frameworks reach the phone that they belong to. They keep no state of the
/// phone: they pass every question on to the simulated phone of the host process.
#pragma once

#include "phones/model/recorder.h"

#include <functional>

namespace noctara {

class BluetoothManager;
class CapabilityFunctions;
class CellularRadio;
class Device;
class LocationManager;
class Motion;
class Notifications;
class Preferences;
class SystemPower;
class SystemSounds;
class WakeScheduler;

/// The parts of the phone that frameworks speak to.
struct StandInServices {
    const Recorder& recorder;
    double coreFoundationVersionNumber;
    BluetoothManager& bluetooth;
    CapabilityFunctions& capabilities;
    CellularRadio& cellular;
    Device& device;
    LocationManager& location;
    Motion& motion;
    Notifications& notifications;
    Preferences& preferences;
    SystemPower& power;
    SystemSounds& sounds;
    WakeScheduler& wakes;
};

class StandInPhone {
public:
    virtual ~StandInPhone() = default;

    /// One thread at a time uses the phone: the one that has entered and not yet left it. Calls may
    /// be nested.
    virtual const StandInServices& enter() = 0;
    virtual void leave() = 0;

    /// Performs `work` in the main run loop and returns when it is done. The phone calls this on
    /// the main thread. Other threads may use the phone meanwhile.
    virtual void performOnMainRunLoop(const std::function<void()>& work) = 0;
};

/// The phone of this process. The host defines the symbol; in a process without a phone its address
/// is null, and the frameworks return null or zero.
extern "C" [[gnu::weak, gnu::visibility("default")]] StandInPhone* standInPhone;

inline StandInPhone* phoneOfThisProcess() {
    return &standInPhone ? standInPhone : nullptr;
}

/// The parts of the phone, entered for as long as the object lives.
class PhoneCall {
public:
    PhoneCall() : phone(phoneOfThisProcess()), services(phone ? &phone->enter() : nullptr) {}
    ~PhoneCall() {
        if (phone)
            phone->leave();
    }
    PhoneCall(const PhoneCall&) = delete;
    PhoneCall& operator=(const PhoneCall&) = delete;

    /// Whether there is a phone.
    explicit operator bool() const { return services; }
    const StandInServices* operator->() const { return services; }

private:
    StandInPhone* phone;
    const StandInServices* services;
};

} // namespace noctara
