/// The services of the real phone. Each function returns the adapter of one interface, which the
/// file named after the interface defines.
///
/// The adapters are compiled without automatic reference counting. A method that the monitor thread
/// calls has an autorelease pool of its own, because the thread's pool is drained only when the
/// thread ends; on the main thread the run loop drains one. No adapter is ever destroyed, because
/// the monitor thread runs until the process ends.
///
/// There is no function for `Threads`: each monitor object has its own, because work on the main
/// thread is a message to that object.
#pragma once

#include "platform/platform.h"

namespace noctara {

class NoctaraThread;

/// Creates SpringBoard's monitor, which belongs to an Objective-C object, and sets the exported
/// `NoctaraInstance` to that object. Null if the object cannot be created.
NoctaraThread* makeMonitorObject();

SystemLog& springBoardLog();
HostProcess& springBoardProcess();
Clock& springBoardClock();
Calendar& springBoardCalendar();
Files& springBoardFiles();
Notifications& springBoardNotifications();
SystemPower& springBoardPower();
WakeScheduler& springBoardWakes();
Charger& springBoardCharger();
Motion& springBoardMotion();
SystemSounds& springBoardSounds();
Applications& springBoardApplications();
Telephony& springBoardTelephony();
WiFi& springBoardWiFi();
BluetoothManager& springBoardBluetooth();
LocationManager& springBoardLocation();
CellularRadio& springBoardCellular();
Preferences& springBoardPreferences();
Device& springBoardDevice();
DynamicLibraries& springBoardLibraries();
CapabilityFunctions& springBoardCapabilities();

} // namespace noctara
