/// A night that is played bit by bit, with a user who acts on the phone meanwhile.
#pragma once

#include "live/lane.h"
#include "live/phone_lanes.h"
#include "monitor/decisions.h"
#include "night/night_report.h"
#include "phones/model/local_time.h"
#include "phones/model/scenario.h"
#include "phones/simulated/simulated_phone.h"

#include <deque>
#include <sstream>
#include <string>
#include <vector>

namespace noctara {

/// What there is to show of a night at a moment.
struct NightPicture {
    TimeZone zone;
    double start; ///< The times are seconds on the monotonic clock.
    double now;
    double end;
    Date clock; ///< On the phone's wall clock.
    Lanes lanes;
    std::deque<std::string> story; ///< The latest lines. They may hold text of the scenario.
};

class LiveNight final : public MonitorObserver {
public:
    /// To be made before the phone is launched. `report` observes the phone already and writes its
    /// story into `told`, which this object empties. All of them must outlive it.
    LiveNight(const Scenario& scenario, SimulatedPhone& phone, NightReport& report,
              std::ostringstream& told);

    void decided(const Decision& decision) override;

    /// Plays on until just before the monitor's work at a whole second: `seconds` on the monotonic
    /// clock, rounded down. Does nothing if that has passed, and stops at the end of the night.
    void playTo(double seconds);

    /// Plays on until the monitor has taken a reading and acted on it, but at most an hour. Returns
    /// whether there was a reading.
    bool playReading();

    /// Makes an event happen now, or a second later if the power management has just sent a
    /// message. A scenario with the event at that time gives the same night. Does nothing at the
    /// end of the night.
    void act(const Event& event);

    /// Ends the night, at its end or before.
    void finish();

    /// The scenario with the user's actions. It ends now.
    Scenario asPlayed() const;

    double now() const { return phone.clock.monotonic; }
    bool hasEnded() const { return now() >= night.end.secondsSince1970; }
    bool isOnCharger() const { return lanes.isOnCharger(); }

    NightPicture picture();

    /// What `act` did, in order.
    const std::vector<ScheduledEvent>& actions() const { return acted; }

    const Scenario& night;
    SimulatedPhone& phone;

private:
    void takeStory();

    NightReport& report;
    std::ostringstream& told;
    PhoneLanes lanes;
    std::deque<std::string> story;
    std::vector<ScheduledEvent> acted;
};

} // namespace noctara
