#include "platform/motion.h"

#include "phones/springboard/services.h"

#import <CoreMotion/CoreMotion.h>

namespace noctara {

namespace {

Acceleration vectorOf(CMAcceleration vector) {
    return {vector.x, vector.y, vector.z};
}

class SpringBoardMotionManager final : public MotionManager {
public:
    ~SpringBoardMotionManager() override { [manager release]; }

    void startAccelerometerUpdates() override {
        @autoreleasepool {
            [manager startAccelerometerUpdates];
        }
    }

    void setAccelerometerUpdateInterval(double seconds) override {
        @autoreleasepool {
            [manager setAccelerometerUpdateInterval:seconds];
        }
    }

    std::optional<Acceleration> deviceMotion() override {
        @autoreleasepool {
            CMDeviceMotion* sample = [manager deviceMotion];
            return sample ? std::optional(vectorOf([sample gravity])) : std::nullopt;
        }
    }

    std::optional<Acceleration> accelerometerData() override {
        @autoreleasepool {
            CMAccelerometerData* sample = [manager accelerometerData];
            return sample ? std::optional(vectorOf([sample acceleration])) : std::nullopt;
        }
    }

    void stopAccelerometerUpdates() override {
        @autoreleasepool {
            [manager stopAccelerometerUpdates];
        }
    }

private:
    CMMotionManager* manager = [[CMMotionManager alloc] init];
};

class SpringBoardMotion final : public Motion {
public:
    std::unique_ptr<MotionManager> makeMotionManager() override {
        return std::make_unique<SpringBoardMotionManager>();
    }
};

} // namespace

Motion& springBoardMotion() {
    static auto& motion = *new SpringBoardMotion;
    return motion;
}

} // namespace noctara
