#include "phones/model/motion_model.h"

namespace noctara {

namespace {

/// The sample of the accelerometer in a posture. Absent if it delivers none.
std::optional<Acceleration> measuredIn(NamedPosture posture) {
    switch (posture) {
    case NamedPosture::ScreenDown:
        return Acceleration{0, 0, 1};
    case NamedPosture::ScreenUp:
        return Acceleration{0, 0, -1};
    case NamedPosture::InHand:
        return Acceleration{0, -0.6, -0.8};
    case NamedPosture::InPocket:
        return Acceleration{0.28, 0.96, 0};
    case NamedPosture::Moving:
        return Acceleration{0.3, 0.4, 1.2};
    case NamedPosture::None:
        break;
    }
    return std::nullopt;
}

CallValue asCallValue(const std::optional<Acceleration>& sample) {
    return sample ? CallValue(*sample) : CallValue();
}

} // namespace

class MotionModel::Manager final : public MotionManager {
public:
    explicit Manager(MotionModel& sensor) : motion(sensor) {}

    void startAccelerometerUpdates() override {
        motion.recorder.call(Operation::startAccelerometerUpdates);
        running = true;
    }

    void setAccelerometerUpdateInterval(double seconds) override {
        motion.recorder.call(Operation::setAccelerometerUpdateInterval, {seconds});
    }

    std::optional<Acceleration> deviceMotion() override {
        const auto sample = motion.deliversDeviceMotion ? motion.measured() : std::nullopt;
        motion.recorder.answered(Operation::deviceMotion, {}, asCallValue(sample));
        return sample;
    }

    std::optional<Acceleration> accelerometerData() override {
        const auto sample = running ? motion.measured() : std::nullopt;
        motion.recorder.answered(Operation::accelerometerData, {}, asCallValue(sample));
        return sample;
    }

    void stopAccelerometerUpdates() override {
        motion.recorder.call(Operation::stopAccelerometerUpdates);
        running = false;
        ++motion.readings;
    }

private:
    MotionModel& motion;
    bool running = false;
};

std::unique_ptr<MotionManager> MotionModel::makeMotionManager() {
    return std::make_unique<Manager>(*this);
}

void MotionModel::setPosture(const Posture& posture) {
    const auto* measured = std::get_if<Acceleration>(&posture);
    posed = measured ? *measured : measuredIn(std::get<NamedPosture>(posture));
}

} // namespace noctara
