/// The interface through which the stand-in frameworks reach the model of the phone in the host
/// process. The frameworks themselves keep no state of the phone.
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

/// The parts of the phone that the frameworks use.
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

    /// Only one thread at a time can be inside, from `enter` to `leave`. Others wait. Calls may be
    /// nested.
    virtual const StandInServices& enter() = 0;
    virtual void leave() = 0;

    /// Runs `work` in the main run loop and returns when it is done. Called on the main thread.
    /// Other threads can enter the phone meanwhile.
    virtual void performOnMainRunLoop(const std::function<void()>& work) = 0;
};

/// The phone of this process. The host defines the symbol. In another process its address is null,
/// and the frameworks return null or zero.
extern "C" [[gnu::weak, gnu::visibility("default")]] StandInPhone* standInPhone;

inline StandInPhone* phoneOfThisProcess() {
    return &standInPhone ? standInPhone : nullptr;
}

/// Enters the phone for the lifetime of the object.
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
