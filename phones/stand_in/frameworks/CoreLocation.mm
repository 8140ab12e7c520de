#include "phones/springboard/private_classes.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/location.h"

using noctara::PhoneCall;

@implementation CLLocationManager

+ (BOOL)locationServicesEnabled {
    PhoneCall phone;
    return phone && phone->location.locationServicesEnabled();
}

+ (void)setLocationServicesEnabled:(BOOL)enabled {
    if (PhoneCall phone; phone)
        phone->location.setLocationServicesEnabled(enabled);
}

@end
