#include "tests/a_night.h"

#include <chrono>

namespace noctara {

ANight::ANight() {
    scenario.end.secondsSince1970 = scenario.start.secondsSince1970 + 7 * 86400;
}

ANight::~ANight() = default;

void ANight::begin() {
    scenario.settings = settings;
    switchOn();
    launch();
}

void ANight::switchOn(std::unique_ptr<FileStore> files) {
    onePhone.emplace(scenario, std::move(files));
    onePhone->observe(calls);
}

void ANight::launch() {
    phone().launch();
}

void ANight::lies(const Posture& posture) {
    phone().happens(PostureChange{posture});
}

void ANight::playReadings(int count) {
    phone().playReadings(count);
}

void ANight::playFor(double seconds) {
    phone().playFor(seconds);
}

void ANight::change(const Dictionary& changed) {
    phone().happens(SettingsChange{changed});
}

void ANight::fallAsleep() {
    lies(ScreenDown);
    playReadings(3);
}

double ANight::at(int year, unsigned month, unsigned day, int hour, int minute, int second) {
    using namespace std::chrono;
    const sys_days date{std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day)};
    return static_cast<double>(
        (date + hours(hour) + minutes(minute) + seconds(second)).time_since_epoch() / 1s);
}

AMonitor::AMonitor() = default;
AMonitor::~AMonitor() = default;

NoctaraThread& AMonitor::make() {
    if (!scenario.settings)
        scenario.settings = settings;
    switchOn();
    own = std::make_unique<NoctaraThread>(phone().platform());
    own->motionManager = phone().platform().motion->makeMotionManager();
    return *own;
}

void AMonitor::TearDown() {
    own.reset();
}

} // namespace noctara
