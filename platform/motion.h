/// The accelerometer (`CMMotionManager`).
#pragma once

#include <memory>
#include <optional>

namespace noctara {

/// In units of g, in the phone's axes: a phone lying still reads z = +1 with the screen facing
/// down and z = -1 with the screen facing up.
struct Acceleration {
    double x = 0;
    double y = 0;
    double z = 0;
};

class MotionManager {
public:
    virtual ~MotionManager() = default;

    virtual void startAccelerometerUpdates() = 0;

    /// The sampling period in seconds.
    virtual void setAccelerometerUpdateInterval(double seconds) = 0;

    /// Gravity in the latest device-motion sample; absent while device-motion updates do not run.
    virtual std::optional<Acceleration> deviceMotion() = 0;

    /// The latest raw sample; absent when none has arrived.
    virtual std::optional<Acceleration> accelerometerData() = 0;

    virtual void stopAccelerometerUpdates() = 0;
};

class Motion {
public:
    virtual ~Motion() = default;

    /// A new motion manager, its updates stopped. Never null.
    virtual std::unique_ptr<MotionManager> makeMotionManager() = 0;
};

} // namespace noctara
