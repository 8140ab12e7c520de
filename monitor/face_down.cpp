/// Face-down detection: one reading of the accelerometer, which runs only meanwhile.
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

} // namespace

bool NoctaraThread::checkState() {
    motionManager->startAccelerometerUpdates();
    motionManager->setAccelerometerUpdateInterval(updateInterval);
    platform.clock.sleep(settleTime);

    double angle;
    double length = 0;
    if (const auto gravity = motionManager->deviceMotion()) {
        // A phone that delivers fused samples is never taken as lying: a length of 0 fails.
        angle = gravity->z;
    } else {
        const auto sample = motionManager->accelerometerData().value_or(Acceleration{});
        angle = computeTiltAngle(&length, sample.x, sample.y, sample.z);
        debugLog("Noctara : angle du device = %f rad -> %f°, norme du vecteur = %f", angle,
                 angle * degreesPerRadian, length);
    }
    const double smallest = std::min(400.0, angle);
    const double largest = std::max(-400.0, angle);
    // The place of the pause between samples, of which there is one.
    platform.clock.sleep(0);
    motionManager->stopAccelerometerUpdates();

    debugLog("Noctara : angle / Z axis : %0.3f", angle);
    debugLog("Noctara : vector length : %0.3f", length);
    debugLog("Noctara : delta angle = %0.4f", std::abs(largest - smallest));
    const double tolerance = postureTolerance(sensitivity);
    debugLog("Noctara : tolerance = %0.6f rad, %0.3f°", tolerance, tolerance * degreesPerRadian);
    return liesInPosture(angle, length, tolerance, screenDown);
}

} // namespace noctara
