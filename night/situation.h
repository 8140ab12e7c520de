/// What the monitor of a night knew at one instant, and when it could change its state next.
#pragma once

#include "monitor/decisions.h"
#include "night/elapsed_time.h"
#include "phones/model/local_time.h"
#include "phones/model/phone_observer.h"
#include "phones/model/scenario.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace noctara {

/// Follows a night up to an instant. What comes later is ignored.
class Situation final : public PhoneObserver, public MonitorObserver {
public:
    /// `wallClock` tells the time on the phone. `instant` is on the wall clock; all that happens at
    /// that time has happened.
    Situation(const Scenario& scenario, Date instant, std::function<Date()> wallClock);

    void called(const Call& call) override;
    void happens(const Happening& happening) override;
    void decided(const Decision& decision) override;

    /// Whether the night went on after the instant.
    bool isReached() const { return reached; }

    /// One sentence or line each.
    std::vector<std::string> description() const;

    /// When the phone could become quiet or be back, if from now on the phone lies as the settings
    /// want it (or not, if it is quiet), is on the charger, and no setting or hand keeps the
    /// monitor from reading. Absent if it cannot, or if the phone is in idle sleep.
    std::optional<Date> earliestChange() const;

private:
    enum class Watch { notStarted, reading, off, suspended, outsideWindow, notOnCharger, ended };

    bool isOver(Date at);
    void watch(Watch now, Date at);

    std::string watchText() const;
    std::string stateText() const;
    std::string windowText() const;
    std::string chargerText() const;
    std::string readingText() const;
    std::string missingText() const;
    bool isInsideWindow(Date at) const;
    std::string at(Date date) const;

    const Scenario night;
    const TimeZone zone;
    const Date instant;
    const std::function<Date()> now;
    ElapsedTime elapsed;
    bool reached = false;

    std::optional<Settings> settings;
    Watch watching = Watch::notStarted;
    Date watchingSince;
    bool changedByHand = false;
    bool quiet = false;
    std::optional<Date> quietSince; ///< Or back since.
    bool onCharger;
    bool unpluggedWhileQuiet = false;
    std::optional<Date> idleSleepSince;

    std::optional<Reading> reading;
    Date readingAt;
    int count = 0; ///< Readings in a row that disagree with the state.

    // The present wait of the monitor.
    Date waitBegan;
    std::int32_t interval = 0; ///< The seconds between two cycles when the wait began.
};

} // namespace noctara
