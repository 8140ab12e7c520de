#include "phones/springboard/noctara_thread.h"

#include "monitor/noctara_thread.h"
#include "phones/springboard/application_objects.h"
#include "phones/springboard/property_list_values.h"
#include "phones/springboard/radios_lib.h"
#include "phones/springboard/services.h"
#include "phones/springboard/threads.h"

NoctaraThread* NoctaraInstance = nil;

@implementation NoctaraThread

- (id)init {
    self = [super init];
    if (!self)
        return nil;
    noctara::Platform phone = *noctara::processPlatform;
    phone.threads = new noctara::SpringBoardThreads(self);
    monitor = new noctara::NoctaraThread(phone);
    radiosLib = [RadiosLib alloc];
    radiosLib->radios = monitor->radiosLib.get();
    return [self retain];
}

- (void)start {
    monitor->start();
}

- (void)stop {
    monitor->stop();
}

- (void)setACState:(BOOL)onAC {
    monitor->setACState(onAC);
}

- (void)sleep:(std::int32_t)seconds {
    monitor->sleep(seconds);
}

- (void)run {
    @autoreleasepool {
        monitor->run();
    }
}

- (void)reloadPreferences {
    monitor->reloadPreferences();
}

- (void)saveValueToFile:(NSString*)path key:(NSString*)key value:(std::int32_t)value {
    monitor->saveValueToFile(noctara::textOf(path), noctara::textOf(key), value);
}

- (BOOL)checkState {
    return monitor->checkState();
}

- (BOOL)isInTimeRange {
    return monitor->isInTimeRange();
}

- (void)awakeApp {
    monitor->awakeApp();
}

- (void)setState:(BOOL)state {
    monitor->setState(state);
}

- (void)setStateAirplaneMode {
    monitor->setStateAirplaneMode();
}

- (BOOL)isEnabled {
    return monitor->isEnabled();
}

- (BOOL)isAirplaneModeActive {
    return monitor->isAirplaneModeActive();
}

- (void)setLocationEnabled:(BOOL)enabled {
    monitor->setLocationEnabled(enabled);
}

- (void)setBluetoothEnabled:(BOOL)enabled {
    monitor->setBluetoothEnabled(enabled);
}

- (BOOL)is3GEnabled {
    return monitor->is3GEnabled();
}

- (BOOL)hasCellularData {
    return monitor->hasCellularData();
}

- (void)startStopApplications:(BOOL)start {
    monitor->startStopApplications(start);
}

- (BOOL)activateApplication:(id)application {
    return monitor->activateApplication(noctara::applicationOf(application));
}

- (id)topApplication {
    return noctara::objectOf(monitor->topApplication());
}

- (id)activateApp:(id)object {
    return static_cast<id>(monitor->activateApp(object));
}

- (void)playAudioOnMainThread:(std::uint32_t)sound {
    monitor->playAudioOnMainThread(sound);
}

- (void)playAudioAsync {
    monitor->playAudioAsync();
}

@end

namespace noctara {

NoctaraThread* makeMonitorObject() {
    ::NoctaraInstance = [[::NoctaraThread alloc] init];
    return ::NoctaraInstance ? ::NoctaraInstance->monitor : nullptr;
}

} // namespace noctara
