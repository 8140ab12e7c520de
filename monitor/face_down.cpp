/// Face-down detection. The accelerometer runs only during a reading.
#include "monitor/noctara_thread.h"
#include "monitor/posture.h"
#include "platform/clock.h"

#include <algorithm>
#include <cmath>

namespace noctara {

namespace {

constexpr double updateInterval = 0.2;
/// Long enough for at least one sample to arrive.
constexpr unsigned settleTime = 1;

/// The motion manager while the main loop does not run. Other code may ask for a reading then.
class NoMotionManager final : public MotionManager {
public:
    void startAccelerometerUpdates() override {}
    void setAccelerometerUpdateInterval(double) override {}
    std::optional<Acceleration> deviceMotion() override { return std::nullopt; }
    std::optional<Acceleration> accelerometerData() override { return std::nullopt; }
    void stopAccelerometerUpdates() override {}
};

} // namespace

bool NoctaraThread::checkState() {
    NoMotionManager none;
    MotionManager& motion = motionManager ? *motionManager : none;
    motion.startAccelerometerUpdates();
    motion.setAccelerometerUpdateInterval(updateInterval);
    platform.clock->sleep(settleTime);

    double angle;
    double length = 0;
    auto source = Reading::Source::accelerometer;
    if (const auto gravity = motion.deviceMotion()) {
        // The length stays 0, so a device-motion sample never counts as lying.
        angle = gravity->z;
        source = Reading::Source::deviceMotion;
    } else {
        const auto measured = motion.accelerometerData();
        if (!measured)
            source = Reading::Source::nothing;
        const auto sample = measured.value_or(Acceleration{});
        angle = computeTiltAngle(&length, sample.x, sample.y, sample.z);
        debugLog("Noctara : angle du device = %f rad -> %f°, norme du vecteur = %f", angle,
                 angle * degreesPerRadian, length);
    }
    const double smallest = std::min(400.0, angle);
    const double largest = std::max(-400.0, angle);
    // The pause between samples. There is only one sample, so the pause is 0 s.
    platform.clock->sleep(0);
    motion.stopAccelerometerUpdates();

    const double tolerance = postureTolerance(sensitivity);
    if (_DEBUG_) {
        debugLog("Noctara : angle / Z axis : %0.3f", angle);
        debugLog("Noctara : vector length : %0.3f", length);
        debugLog("Noctara : delta angle = %0.4f", std::abs(largest - smallest));
        debugLog("Noctara : tolerance = %0.6f rad, %0.3f°", tolerance,
                 tolerance * degreesPerRadian);
    }
    const bool lies = liesInPosture(angle, length, tolerance, screenDown);
    report([&] { return Reading{source, angle, length, tolerance, screenDown, lies}; });
    return lies;
}

} // namespace noctara
