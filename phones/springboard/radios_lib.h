/// The radio controller as an Objective-C object, for other code in SpringBoard to send messages
/// to.
///
/// Each method calls the function of its name in `radios/radios_lib.h`, which describes it.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>

namespace noctara {
class RadiosLib;
}

@interface RadiosLib : NSObject {
@package
    noctara::RadiosLib* radios;
}

/// A radio controller of its own on this phone.
- (id)init;

- (BOOL)isAirplaneModeEnabled;
- (void)setAirplaneModeEnabled:(BOOL)enabled;

- (BOOL)isCallInProgress;
- (BOOL)isTethering;

- (BOOL)isWifiEnabled;
- (void)setWifiEnabled:(BOOL)enabled;
/// The object that the Wi-Fi manager returns for a message of the same selector.
- (id)wifiManagerQuery;

- (BOOL)isBluetoothEnabled;
- (BOOL)isBluetoothConnected;
- (void)setBluetoothEnabled:(BOOL)enabled;

- (BOOL)isCellularDataEnabled;
- (BOOL)setCellularDataEnabled:(BOOL)enabled;

/// One of CoreTelephony's constants, which are compared by address.
- (id)getCurrentMaxAllowedDataRate;
- (BOOL)is3GEnabled;
- (BOOL)query3GEnabled:(BOOL)ignored;
- (BOOL)set3GEnabled:(BOOL)enabled;
- (void)setDisable3GOn4GDevices:(BOOL)disable;

- (BOOL)isLocationEnabled;
- (void)setLocationEnabled:(BOOL)enabled;

- (BOOL)isPushEnabled;
- (void)setPushEnabled:(BOOL)enabled;

- (std::int32_t)getDeviceKind:(id)status;
- (BOOL)detectRadioCapabilities;
- (BOOL)supportsCapability:(NSString*)name;

@end
