/// The services of the real phone: behind each function stands the adapter of the interface that it
/// hands out, in the file that is named after that interface.
///
/// The adapters are compiled without automatic reference counting. Each call has an autorelease
/// pool of its own, since the monitor thread's pool lasts as long as the thread.
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
