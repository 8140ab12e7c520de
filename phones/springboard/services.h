/// The services of the real phone: behind each function stands the adapter of the interface that it
/// hands out, in the file that is named after that interface.
///
/// The adapters are compiled without automatic reference counting. What the monitor thread calls
/// has an autorelease pool of its own each time, since the thread's pool lasts as long as the
/// thread; the main thread has its run loop's. Nothing here is ever destroyed: the monitor thread
/// runs until the process is gone.
#pragma once

#include "platform/platform.h"

namespace noctara {

SystemLog& springBoardLog();
HostProcess& springBoardProcess();
Threads& springBoardThreads();
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
