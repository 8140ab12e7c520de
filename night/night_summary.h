/// The figures of a night.
#pragma once

#include "phones/model/phone_model.h"

#include <cstddef>
#include <ostream>

namespace noctara {

class NightSummary final : public PhoneObserver {
public:
    explicit NightSummary(const PhoneModel& watched) : phone(watched) {}

    void called(const Call& call) override;
    void happens(const Happening& happening) override;

    /// To be called when the night is over.
    void print(std::ostream& out) const;

    int transitions = 0;
    int readings = 0;
    int wakesScheduled = 0;
    int wakesFired = 0; ///< Those that woke the phone up.
    int idleSleepsRefused = 0;
    int idleSleepsAllowed = 0;
    int applicationsLaunched = 0; ///< Or brought to the front.
    int applicationsQuit = 0;
    double secondsInSleepState = 0;
    double accelerometerSeconds = 0;
    double secondsOfSystemSleep = 0;

private:
    std::ptrdiff_t wakesListed() const;
    double now() const { return phone.clock.elapsedClock; }

    const PhoneModel& phone;
    double started = phone.clock.elapsedClock;
    double accelerometerStarted = 0;
    bool inSleepState = false;
    double sleepStateBegan = phone.clock.elapsedClock;
    double systemSleepBegan = 0;
    std::ptrdiff_t wakesListedBeforeSleep = 0;
};

} // namespace noctara
