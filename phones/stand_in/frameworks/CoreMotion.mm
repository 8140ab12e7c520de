#include "phones/stand_in/stand_in_phone.h"
#include "platform/motion.h"

#import <CoreMotion/CoreMotion.h>

using noctara::PhoneCall;

@implementation CMAccelerometerData

- (CMAcceleration)acceleration {
    return measured;
}

@end

@implementation CMDeviceMotion

- (CMAcceleration)gravity {
    return measured;
}

@end

static noctara::MotionManager* managerOf(void* sensor) {
    return static_cast<noctara::MotionManager*>(sensor);
}

@implementation CMMotionManager

- (id)init {
    self = [super init];
    if (PhoneCall phone; self && phone)
        sensor = phone->motion.makeMotionManager().release();
    return self;
}

- (void)dealloc {
    delete managerOf(sensor);
    [super dealloc];
}

- (void)startAccelerometerUpdates {
    if (PhoneCall phone; phone)
        managerOf(sensor)->startAccelerometerUpdates();
}

- (void)setAccelerometerUpdateInterval:(NSTimeInterval)seconds {
    if (PhoneCall phone; phone)
        managerOf(sensor)->setAccelerometerUpdateInterval(seconds);
}

- (CMDeviceMotion*)deviceMotion {
    PhoneCall phone;
    const auto gravity = phone ? managerOf(sensor)->deviceMotion() : std::nullopt;
    if (!gravity)
        return nil;
    CMDeviceMotion* sample = [[[CMDeviceMotion alloc] init] autorelease];
    sample->measured = {gravity->x, gravity->y, gravity->z};
    return sample;
}

- (CMAccelerometerData*)accelerometerData {
    PhoneCall phone;
    const auto acceleration = phone ? managerOf(sensor)->accelerometerData() : std::nullopt;
    if (!acceleration)
        return nil;
    CMAccelerometerData* sample = [[[CMAccelerometerData alloc] init] autorelease];
    sample->measured = {acceleration->x, acceleration->y, acceleration->z};
    return sample;
}

- (void)stopAccelerometerUpdates {
    if (PhoneCall phone; phone)
        managerOf(sensor)->stopAccelerometerUpdates();
}

@end
