/// The routine that the dynamic loader runs when it loads the library. It is plain C++ and linked
/// last, because the constructor of an Objective-C file can run before the file's classes exist.
#include "host/host.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

[[gnu::constructor]] void load() {
    static const Platform springBoard{
        .log = &springBoardLog(),
        .process = &springBoardProcess(),
        .clock = &springBoardClock(),
        .calendar = &springBoardCalendar(),
        .files = &springBoardFiles(),
        .notifications = &springBoardNotifications(),
        .power = &springBoardPower(),
        .wakes = &springBoardWakes(),
        .charger = &springBoardCharger(),
        .motion = &springBoardMotion(),
        .sounds = &springBoardSounds(),
        .applications = &springBoardApplications(),
        .telephony = &springBoardTelephony(),
        .wifi = &springBoardWiFi(),
        .bluetooth = &springBoardBluetooth(),
        .location = &springBoardLocation(),
        .cellular = &springBoardCellular(),
        .preferences = &springBoardPreferences(),
        .device = &springBoardDevice(),
        .libraries = &springBoardLibraries(),
        .capabilities = &springBoardCapabilities(),
    };
    processPlatform = &springBoard;
    makeMonitor = makeMonitorObject;
    NoctaraInitialize();
}

} // namespace

} // namespace noctara
