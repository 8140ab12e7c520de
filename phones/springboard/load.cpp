/// What the dynamic loader runs when the library is loaded into a process. Plain C++, and linked
/// last: the constructor of an Objective-C file can run before the classes of that file exist.
#include "host/host.h"
#include "phones/springboard/services.h"

namespace noctara {

namespace {

[[gnu::constructor]] void load() {
    static const Platform springBoard{
        springBoardLog(),           springBoardProcess(),   springBoardThreads(),
        springBoardClock(),         springBoardCalendar(),  springBoardFiles(),
        springBoardNotifications(), springBoardPower(),     springBoardWakes(),
        springBoardCharger(),       springBoardMotion(),    springBoardSounds(),
        springBoardApplications(),  springBoardTelephony(), springBoardWiFi(),
        springBoardBluetooth(),     springBoardLocation(),  springBoardCellular(),
        springBoardPreferences(),   springBoardDevice(),    springBoardLibraries(),
        springBoardCapabilities()};
    processPlatform = &springBoard;
    NoctaraInitialize();
}

} // namespace

} // namespace noctara
