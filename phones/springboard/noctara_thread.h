/// The monitor as an Objective-C object, for other code in SpringBoard to send messages to.
///
/// Each method calls the function of its name in `monitor/noctara_thread.h`, which describes it.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>

namespace noctara {
class NoctaraThread;
}

@class RadiosLib;

/// Never deallocated, because the handler of the settings notification uses it until the process
/// ends.
@interface NoctaraThread : NSObject {
@package
    noctara::NoctaraThread* monitor;
@private
    RadiosLib* radiosLib; ///< The monitor's own one.
}

/// A monitor on this phone, whose thread has not been started. Main thread.
- (id)init;

- (void)start;
- (void)stop;
- (void)setACState:(BOOL)onAC;
- (void)sleep:(std::int32_t)seconds;
- (void)run;

- (void)reloadPreferences;
- (void)saveValueToFile:(NSString*)path key:(NSString*)key value:(std::int32_t)value;

- (BOOL)checkState;

- (BOOL)isInTimeRange;
- (void)awakeApp;

- (void)setState:(BOOL)state;
- (void)setStateAirplaneMode;
- (BOOL)isEnabled;
- (BOOL)isAirplaneModeActive;
- (void)setLocationEnabled:(BOOL)enabled;
- (void)setBluetoothEnabled:(BOOL)enabled;
- (BOOL)is3GEnabled;
- (BOOL)hasCellularData;

- (void)startStopApplications:(BOOL)start;
/// An application of SpringBoard's, or nil for the home screen.
- (BOOL)activateApplication:(id)application;
/// Nil on the home screen.
- (id)topApplication;
- (id)activateApp:(id)object;

- (void)playAudioOnMainThread:(std::uint32_t)sound;
- (void)playAudioAsync;

@end

/// SpringBoard's monitor; nil until SpringBoard has finished launching, and never cleared. Written
/// on the main thread. The library exports this symbol.
extern "C" [[gnu::visibility("default")]] NoctaraThread* NoctaraInstance;
