#include "phones/model/motion_model.h"

#include <array>

namespace noctara {

namespace {

struct Posture {
    std::string_view name;
    Acceleration acceleration;
};

constexpr std::array postures{
    Posture{"screen-down", {0, 0, 1}},   Posture{"screen-up", {0, 0, -1}},
    Posture{"in-hand", {0, -0.6, -0.8}}, Posture{"in-pocket", {0.28, 0.96, 0}},
    Posture{"moving", {0.3, 0.4, 1.2}},
};

double number(const PropertyList& value) {
    if (const auto* integer = value.as<std::int64_t>())
        return static_cast<double>(*integer);
    const auto* real = value.as<double>();
    return real ? *real : 0;
}

CallValue asCallValue(const std::optional<Acceleration>& sample) {
    return sample ? CallValue(*sample) : CallValue();
}

} // namespace

class MotionModel::Manager final : public MotionManager {
public:
    explicit Manager(MotionModel& sensor) : motion(sensor) {}

    void startAccelerometerUpdates() override {
        motion.recorder.call("startAccelerometerUpdates");
        running = true;
    }

    void setAccelerometerUpdateInterval(double seconds) override {
        motion.recorder.call("setAccelerometerUpdateInterval:", {seconds});
    }

    std::optional<Acceleration> deviceMotion() override {
        const auto sample = motion.deliversDeviceMotion ? motion.measured() : std::nullopt;
        motion.recorder.answered("deviceMotion", {}, asCallValue(sample));
        return sample;
    }

    std::optional<Acceleration> accelerometerData() override {
        const auto sample = running ? motion.measured() : std::nullopt;
        motion.recorder.answered("accelerometerData", {}, asCallValue(sample));
        return sample;
    }

    void stopAccelerometerUpdates() override {
        motion.recorder.call("stopAccelerometerUpdates");
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

void MotionModel::setPosture(const PropertyList& posture) {
    posed.reset();
    if (const auto* axes = posture.as<Array>())
        posed = {number((*axes)[0]), number((*axes)[1]), number((*axes)[2])};
    if (const auto* name = posture.as<std::string>())
        for (const auto& known : postures)
            if (known.name == *name)
                posed = known.acceleration;
}

} // namespace noctara
