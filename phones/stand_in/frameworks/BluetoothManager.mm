#include "phones/springboard/private_classes.h"
#include "phones/stand_in/stand_in_phone.h"
#include "platform/bluetooth.h"

using noctara::PhoneCall;

@implementation BluetoothManager

+ (BluetoothManager*)sharedInstance {
    static BluetoothManager* shared = [[BluetoothManager alloc] init];
    return shared;
}

- (BOOL)enabled {
    PhoneCall phone;
    return phone && phone->bluetooth.enabled();
}

- (BOOL)connected {
    PhoneCall phone;
    return phone && phone->bluetooth.connected();
}

- (void)setPowered:(BOOL)powered {
    if (PhoneCall phone; phone)
        phone->bluetooth.setPowered(powered);
}

- (void)setEnabled:(BOOL)enabled {
    if (PhoneCall phone; phone)
        phone->bluetooth.setEnabled(enabled);
}

@end
