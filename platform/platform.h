/// A phone: every service that the monitor asks of one, the time of day included.
///
/// The core reaches a phone through these references alone, so that it runs the same inside
/// SpringBoard and on a simulated phone.
#pragma once

namespace noctara {

class Applications;
class BluetoothManager;
class Calendar;
class CapabilityFunctions;
class CellularRadio;
class Charger;
class Clock;
class Device;
class DynamicLibraries;
class Files;
class HostProcess;
class LocationManager;
class Motion;
class Notifications;
class Preferences;
class SystemLog;
class SystemPower;
class SystemSounds;
class Telephony;
class Threads;
class WakeScheduler;
class WiFi;

struct Platform {
    SystemLog& log;
    HostProcess& process;
    Threads& threads;
    Clock& clock;
    Calendar& calendar;
    Files& files;
    Notifications& notifications;
    SystemPower& power;
    WakeScheduler& wakes;
    Charger& charger;
    Motion& motion;
    SystemSounds& sounds;
    Applications& applications;
    Telephony& telephony;
    WiFi& wifi;
    BluetoothManager& bluetooth;
    LocationManager& location;
    CellularRadio& cellular;
    Preferences& preferences;
    Device& device;
    DynamicLibraries& libraries;
    CapabilityFunctions& capabilities;
};

/// The phone of this process, for the entry points that the loader and the system call without
/// arguments. Set once, before the first of them is called, by whoever provides the phone; null
/// until then.
inline const Platform* processPlatform = nullptr;

} // namespace noctara
