/// The services of a phone that the core uses.
///
/// The core uses the phone only through these services, so that the same code runs in SpringBoard
/// and on a simulated phone. The provider of the phone sets every pointer. The services must
/// outlive the objects of the core that use them.
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
    SystemLog* log = nullptr;
    HostProcess* process = nullptr;
    Threads* threads = nullptr;
    Clock* clock = nullptr;
    Calendar* calendar = nullptr;
    Files* files = nullptr;
    Notifications* notifications = nullptr;
    SystemPower* power = nullptr;
    WakeScheduler* wakes = nullptr;
    Charger* charger = nullptr;
    Motion* motion = nullptr;
    SystemSounds* sounds = nullptr;
    Applications* applications = nullptr;
    Telephony* telephony = nullptr;
    WiFi* wifi = nullptr;
    BluetoothManager* bluetooth = nullptr;
    LocationManager* location = nullptr;
    CellularRadio* cellular = nullptr;
    Preferences* preferences = nullptr;
    Device* device = nullptr;
    DynamicLibraries* libraries = nullptr;
    CapabilityFunctions* capabilities = nullptr;
};

/// The phone of this process, for entry points that receive no platform from their caller. The
/// provider of the phone sets it before the first entry point is called. Null until then. Its
/// `threads` may be null, because no entry point uses them.
inline const Platform* processPlatform = nullptr;

} // namespace noctara
