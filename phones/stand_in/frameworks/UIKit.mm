#include "phones/stand_in/stand_in_phone.h"
#include "platform/device.h"

#import <UIKit/UIKit.h>

using noctara::PhoneCall;

@implementation UIDevice

+ (UIDevice*)currentDevice {
    static UIDevice* current = [[UIDevice alloc] init];
    return current;
}

- (NSInteger)userInterfaceIdiom {
    PhoneCall phone;
    return phone ? phone->device.userInterfaceIdiom() : 0;
}

@end

static UIApplication* shared = nil;

@implementation UIApplication

+ (UIApplication*)sharedApplication {
    return shared;
}

- (id)init {
    self = [super init];
    if (!shared)
        shared = [self retain];
    return self;
}

@end
