#include "phones/springboard/radios_lib.h"

#include "phones/springboard/private_functions.h"
#include "phones/springboard/property_list_values.h"
#include "radios/radios_lib.h"

#include <objc/runtime.h>

@implementation RadiosLib

- (id)init {
    self = [super init];
    if (self)
        radios = new noctara::RadiosLib(*noctara::processPlatform);
    return self;
}

// The object of a monitor, whose radio controller belongs to the monitor, is never deallocated.
- (void)dealloc {
    delete radios;
    [super dealloc];
}

- (BOOL)isAirplaneModeEnabled {
    return radios->isAirplaneModeEnabled();
}

- (void)setAirplaneModeEnabled:(BOOL)enabled {
    radios->setAirplaneModeEnabled(enabled);
}

- (BOOL)isCallInProgress {
    return radios->isCallInProgress();
}

- (BOOL)isTethering {
    return radios->isTethering();
}

- (BOOL)isWifiEnabled {
    return radios->isWifiEnabled();
}

- (void)setWifiEnabled:(BOOL)enabled {
    radios->setWifiEnabled(enabled);
}

- (id)wifiManagerQuery {
    const auto answer = radios->wifiManagerQuery(sel_getName(_cmd));
    return answer ? noctara::objectOf(*answer) : nil;
}

- (BOOL)isBluetoothEnabled {
    return radios->isBluetoothEnabled();
}

- (BOOL)isBluetoothConnected {
    return radios->isBluetoothConnected();
}

- (void)setBluetoothEnabled:(BOOL)enabled {
    radios->setBluetoothEnabled(enabled);
}

- (BOOL)isCellularDataEnabled {
    return radios->isCellularDataEnabled();
}

- (BOOL)setCellularDataEnabled:(BOOL)enabled {
    return radios->setCellularDataEnabled(enabled);
}

- (id)getCurrentMaxAllowedDataRate {
    // The core's value would lose a rate that the core does not know.
    return (id)noctara::callIfPresent(CTRegistrationGetCurrentMaxAllowedDataRate);
}

- (BOOL)is3GEnabled {
    return radios->is3GEnabled();
}

- (BOOL)query3GEnabled:(BOOL)ignored {
    return radios->query3GEnabled(ignored);
}

- (BOOL)set3GEnabled:(BOOL)enabled {
    return radios->set3GEnabled(enabled);
}

- (void)setDisable3GOn4GDevices:(BOOL)disable {
    radios->setDisable3GOn4GDevices(disable);
}

- (BOOL)isLocationEnabled {
    return radios->isLocationEnabled();
}

- (void)setLocationEnabled:(BOOL)enabled {
    radios->setLocationEnabled(enabled);
}

- (BOOL)isPushEnabled {
    return radios->isPushEnabled();
}

- (void)setPushEnabled:(BOOL)enabled {
    radios->setPushEnabled(enabled);
}

- (std::int32_t)getDeviceKind:(id)status {
    return radios->getDeviceKind(status);
}

- (BOOL)detectRadioCapabilities {
    return radios->detectRadioCapabilities();
}

- (BOOL)supportsCapability:(NSString*)name {
    return radios->supportsCapability(noctara::textOf(name));
}

@end
