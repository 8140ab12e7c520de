/// The figures of a night.
#pragma once

#include "monitor/decisions.h"
#include "night/elapsed_time.h"
#include "night/wake_ups.h"
#include "phones/model/phone_observer.h"
#include "phones/model/scenario.h"

#include <ostream>

namespace noctara {

class NightSummary {
public:
    explicit NightSummary(const Scenario& scenario);

    void called(const Call& call);
    void happens(const Happening& happening);
    void decided(Date at, const Decision& decision);

    /// Prints the figures of the night, which ends at `end` on the wall clock.
    void print(std::ostream& out, Date end) const;

private:
    const double started; ///< On the monotonic clock, as all times here.
    ElapsedTime elapsed;
    WakeUps wakeUps;

    int transitions = 0;
    int readings = 0;
    int wakesScheduled = 0;
    int wakesFired = 0; ///< Only wake-ups of the monitor that woke the phone.
    int idleSleepsRefused = 0;
    int idleSleepsAllowed = 0;
    int applicationsLaunched = 0; ///< Or brought to the front.
    int applicationsQuit = 0;

    bool inSleepState = false;
    double sleepStateBegan;
    double secondsInSleepState = 0;
    double accelerometerStarted = 0;
    double accelerometerSeconds = 0;
    double systemSleepBegan = 0;
    double secondsOfSystemSleep = 0;
};

} // namespace noctara
