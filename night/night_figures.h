/// The figures of a night.
#pragma once

#include "monitor/decisions.h"
#include "night/elapsed_time.h"
#include "night/wake_ups.h"
#include "phones/model/phone_observer.h"
#include "phones/model/scenario.h"

#include <optional>

namespace noctara {

/// Durations are in seconds.
struct NightFigures {
    double duration = 0;
    double quiet = 0;        ///< In the quiet state.
    bool stillQuiet = false; ///< At the end.
    std::optional<Date> firstQuiet;
    std::optional<Date> lastBack;
    int timesQuiet = 0; ///< A phone that is quiet when the monitor starts counts.
    int timesBack = 0;
    int readings = 0;
    double accelerometerOn = 0;
    int wakesScheduled = 0;
    int wakesFired = 0; ///< Only wake-ups of the monitor that woke the phone.
    int idleSleepsRefused = 0;
    int idleSleepsAllowed = 0;
    double idleSleep = 0;
    int applicationsLaunched = 0; ///< Or brought to the front.
    int applicationsQuit = 0;

    friend bool operator==(const NightFigures&, const NightFigures&) = default;
};

/// Counts the figures of a night while it is played.
class FigureCounter {
public:
    explicit FigureCounter(const Scenario& scenario);

    void called(const Call& call);
    void happens(const Happening& happening);
    void decided(Date at, const Decision& decision);

    /// The figures of the night if it ends at `end`, on the wall clock.
    NightFigures figures(Date end) const;

private:
    void changeState(bool quiet, Date at);

    const double started; ///< On the monotonic clock, as all times here.
    ElapsedTime elapsed;
    WakeUps wakeUps;
    NightFigures counted;
    double quietBegan;
    double accelerometerStarted = 0;
    double idleSleepBegan = 0;
};

} // namespace noctara
