/// The capability queries as methods of the device object, for other code in SpringBoard.
#include "phones/springboard/property_list_values.h"
#include "radios/device_capabilities.h"

#import <UIKit/UIKit.h>

@interface UIDevice (Capabilities)

/// Whether the device has the capability of that name.
- (BOOL)supportsCapability:(NSString*)name;

/// The capability's value, autoreleased; nil when it has none.
- (id)fetchCapability:(NSString*)name;

/// The names of the known capabilities that the device has.
- (NSMutableArray*)capabilityArray;

/// Prints on standard output the device's name and, for each known capability, whether the device
/// has it.
- (void)scanCapabilities;

@end

@implementation UIDevice (Capabilities)

- (BOOL)supportsCapability:(NSString*)name {
    return noctara::DeviceCapabilities(*noctara::processPlatform)
        .supportsCapability(noctara::textOf(name));
}

- (id)fetchCapability:(NSString*)name {
    const auto value = noctara::DeviceCapabilities(*noctara::processPlatform)
                           .fetchCapability(noctara::textOf(name));
    return value ? noctara::objectOf(*value) : nil;
}

- (NSMutableArray*)capabilityArray {
    NSMutableArray* names = [NSMutableArray array];
    for (const auto& name :
         noctara::DeviceCapabilities(*noctara::processPlatform).capabilityArray())
        [names addObject:noctara::stringOf(name)];
    return names;
}

- (void)scanCapabilities {
    noctara::DeviceCapabilities(*noctara::processPlatform).scanCapabilities();
}

@end
