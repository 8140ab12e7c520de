/// How the stand-in frameworks reach the phone that they belong to. They keep nothing of the
/// phone's state: all that they are asked, they ask the one simulated phone behind the host
/// process.
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

    /// The phone is used by one thread at a time: between these two, by the calling one. They nest.
    virtual const StandInServices& enter() = 0;
    virtual void leave() = 0;

    /// Has the main run loop do `work`, and returns when it is done. To be called on the main
    /// thread, by the phone; other threads may use the phone meanwhile.
    virtual void performOnMainRunLoop(const std::function<void()>& work) = 0;
};

/// The phone of this process. Defined by the host: in a process that is on no phone the symbol has
/// no address, and the frameworks then answer nothing.
extern "C" [[gnu::weak, gnu::visibility("default")]] StandInPhone* standInPhone;

inline StandInPhone* phoneOfThisProcess() {
    return &standInPhone ? standInPhone : nullptr;
}

/// The phone's parts for the length of a call.
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
