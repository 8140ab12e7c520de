/// The accelerometer of the simulated phone.
#pragma once

#include "phones/model/event.h"
#include "phones/model/recorder.h"
#include "platform/motion.h"

#include <functional>

namespace noctara {

class MotionModel final : public Motion {
public:
    MotionModel(bool withDeviceMotion, const Recorder& calls) :
        deliversDeviceMotion(withDeviceMotion), recorder(calls) {}

    std::unique_ptr<MotionManager> makeMotionManager() override;

    void setPosture(const Posture& posture);

    /// The current sample of the sensor. Absent if it delivers none. It comes from `source` if that
    /// is set, otherwise from the posture.
    std::optional<Acceleration> measured() const { return source ? source() : posed; }
    std::function<std::optional<Acceleration>()> source;

    std::optional<Acceleration> posedSample() const { return posed; }

    /// How often the sensor was stopped.
    int readings = 0;

private:
    class Manager;

    bool deliversDeviceMotion;
    const Recorder& recorder;
    std::optional<Acceleration> posed;
};

} // namespace noctara
