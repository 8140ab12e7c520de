/// The accelerometer (`CMMotionManager`).
#pragma once

#include <memory>
#include <optional>

namespace noctara {

/// In units of g, in the phone's axes. A phone that lies still reads z = +1 with the screen down
/// and z = -1 with the screen up.
struct Acceleration {
    double x = 0;
    double y = 0;
    double z = 0;

    friend bool operator==(const Acceleration&, const Acceleration&) = default;
};

class MotionManager {
public:
    virtual ~MotionManager() = default;

    virtual void startAccelerometerUpdates() = 0;

    /// The sampling period in seconds.
    virtual void setAccelerometerUpdateInterval(double seconds) = 0;

    /// Gravity in the latest device-motion sample. Absent if there is none, for example because
    /// device-motion updates do not run.
    virtual std::optional<Acceleration> deviceMotion() = 0;

    /// The latest raw sample. Absent if none has arrived.
    virtual std::optional<Acceleration> accelerometerData() = 0;

    virtual void stopAccelerometerUpdates() = 0;
};

class Motion {
public:
    virtual ~Motion() = default;

    /// A new motion manager whose updates are stopped. Never null.
    virtual std::unique_ptr<MotionManager> makeMotionManager() = 0;
};

} // namespace noctara
