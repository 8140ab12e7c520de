/// Follows a phone and its monitor, and keeps the lanes of the night.
#pragma once

#include "live/lane.h"
#include "monitor/decisions.h"
#include "night/wake_ups.h"
#include "phones/model/phone_observer.h"
#include "phones/model/radio_switches.h"
#include "phones/simulated/simulated_phone.h"

#include <optional>
#include <string>

namespace noctara {

class PhoneLanes final : public PhoneObserver {
public:
    /// Both must outlive this object.
    PhoneLanes(const Scenario& scenario, const SimulatedPhone& phone);

    void called(const Call& call) override;
    void happens(const Happening& happening) override;
    void decided(const Decision& decision);

    /// The lanes with their values now.
    const Lanes& lanes();

    bool isOnCharger() const { return onCharger; }

    /// When the power management last sent a message, on the monotonic clock.
    double lastPowerMessage() const { return powerMessageAt; }

private:
    struct Following;

    Lane& lane(LaneName name) { return all[static_cast<std::size_t>(name)]; }
    void note(LaneName name, Mark mark);
    void look();
    void lookAtPosture();
    void followPowerMessage(Date at, std::uint32_t type);
    void followCue(const Call& call);

    std::string timeNow() const;
    std::string postureInWords() const;
    std::string stateInWords() const;
    Mark stateMark() const;
    std::string wakeUpInWords() const;
    std::string applicationsInWords() const;
    std::string nameOf(const std::string& identifier) const;

    const Scenario& night;
    const SimulatedPhone& onPhone;
    Lanes all;

    std::optional<NamedPosture> posture; ///< Absent for one that has no name.
    bool onCharger;
    double powerMessageAt = -1;
    WakeUps wakeUps;
    bool refusedSleep = false;

    bool wantsScreenDown = true;
    int inARow = 0;
    bool monitors = false;
    bool inSleepState = false;
    bool suspended = false; ///< Airplane mode was changed by hand.
    std::optional<NoReading::Reason> noReading;
    std::int64_t warningSound = 0;
};

} // namespace noctara
