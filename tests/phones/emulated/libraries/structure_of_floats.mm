#import <Foundation/Foundation.h>

struct Doubles {
    double x, y, z;
};
struct Floats {
    float x, y, z;
};

@interface CMDeviceMotion : NSObject
- (Doubles)gravity;
@end
@interface CMMotionManager : NSObject
- (void)startAccelerometerUpdates;
- (CMDeviceMotion*)deviceMotion;
@end
extern "C" Floats sendForFloats(id, SEL) __asm("_objc_msgSend");

namespace {

[[gnu::constructor]] void measure() {
    @autoreleasepool {
        CMMotionManager* const manager = [[CMMotionManager alloc] init];
        [manager startAccelerometerUpdates];
        CMDeviceMotion* const motion = [manager deviceMotion];
        const Doubles right = [motion gravity];
        const Floats wrong = sendForFloats(motion, @selector(gravity));
        NSLog(@"%.1f %.1f %.1f", right.x, right.y, right.z);
        NSLog(@"%.1f", static_cast<double>(wrong.x));
        [manager release];
    }
}

} // namespace
