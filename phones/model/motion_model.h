/// The accelerometer of the simulated phone.
#pragma once

#include "phones/model/recorder.h"
#include "platform/motion.h"

#include <functional>

namespace noctara {

class MotionModel final : public Motion {
public:
    MotionModel(bool withDeviceMotion, const Recorder& calls) :
        deliversDeviceMotion(withDeviceMotion), recorder(calls) {}

    std::unique_ptr<MotionManager> makeMotionManager() override;

    /// Moves the phone: a posture as an event names it, or an array of x, y, z in g.
    void setPosture(const PropertyList& posture);

    /// What the sensor measures now; absent when it delivers nothing. That is the posture's sample
    /// unless there is another source.
    std::optional<Acceleration> measured() const { return source ? source() : posed; }
    std::function<std::optional<Acceleration>()> source;

    std::optional<Acceleration> posedSample() const { return posed; }

    /// How often the sensor was started and stopped again.
    int readings = 0;

private:
    class Manager;

    bool deliversDeviceMotion;
    const Recorder& recorder;
    std::optional<Acceleration> posed;
};

} // namespace noctara
