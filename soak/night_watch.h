/// Watches a night on the simulated phone and holds it to the invariants.
#pragma once

#include "monitor/decisions.h"
#include "soak/invariant.h"

#include <memory>
#include <vector>

namespace noctara {

/// Turns calls and events into the steps of the night, and tells the invariants of them. The
/// monitor's own report is used for one thing only: that a cycle takes no reading, because such a
/// cycle can be without any call.
class NightWatch final : public PhoneObserver, public MonitorObserver {
public:
    /// Observes the phone, which has not been launched. It must live until the phone has been
    /// played. Make it the monitor's observer as well.
    NightWatch(SimulatedPhone& phone, const Scenario& scenario);

    void called(const Call& call) override;
    void happens(const Happening& happening) override;
    void decided(const Decision& decision) override;

    /// Call it when the night has been played.
    void endNight();

    const std::optional<Breach>& breach() const { return night.breach; }
    const std::vector<std::unique_ptr<Invariant>>& invariants() const { return all; }
    int timesQuiet() const { return quietTimes; }

private:
    enum class Phase {
        beforeLoop,
        waiting,
        reading,
        working, ///< After a reading or the decision to take none, until the wait.
    };

    template <typename Step>
    void tell(Step step) {
        for (const auto& invariant : all)
            step(*invariant);
    }

    bool isWait(const Call& call) const;
    void followCall(const Call& call);
    void beginCycle(bool takesReading);
    void endReading();
    void beginWait(std::int64_t seconds);
    bool airplaneModeAsReported() const;

    WatchedNight night;
    std::vector<std::unique_ptr<Invariant>> all;
    const bool isInert;
    int quietTimes = 0;

    Phase phase = Phase::beforeLoop;
    std::optional<Acceleration> sample;
    bool fromDeviceMotion = false;
    bool settingsFileIsAsked = false; ///< The next read of the settings file is a load.
    bool changing = false;
};

} // namespace noctara
