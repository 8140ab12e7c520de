/// CoreMotion's accelerometer.
#pragma once

#import <Foundation/Foundation.h>

/// In g, in the device's axes.
typedef struct {
    double x;
    double y;
    double z;
} CMAcceleration;

@interface CMAccelerometerData : NSObject {
@public
    CMAcceleration measured;
}
- (CMAcceleration)acceleration;
@end

@interface CMDeviceMotion : NSObject {
@public
    CMAcceleration measured;
}
- (CMAcceleration)gravity;
@end

@interface CMMotionManager : NSObject {
    void* sensor;
}
- (void)startAccelerometerUpdates;
- (void)setAccelerometerUpdateInterval:(NSTimeInterval)seconds;
- (CMDeviceMotion*)deviceMotion;
- (CMAccelerometerData*)accelerometerData;
- (void)stopAccelerometerUpdates;
@end
