/// Collects a night for the report page: what the monitor measured and decided, what it did, and
/// what happened to the phone.
#pragma once

#include "monitor/decisions.h"
#include "night/elapsed_time.h"
#include "night/morning_check.h"
#include "night/night_summary.h"
#include "night/story.h"
#include "night/wake_ups.h"
#include "report/night_cycles.h"

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace noctara {

class NightRecord final : public PhoneObserver, public MonitorObserver {
public:
    /// `wallClock` tells the time on the phone.
    NightRecord(const Scenario& scenario, std::function<Date()> wallClock);

    void called(const Call& call) override;
    void happens(const Happening& happening) override;
    void decided(const Decision& decision) override;

    /// A recording provides the accelerometer samples from `from` on.
    void followsRecording(const std::string& name, Date from,
                          const std::vector<std::string>& remarks);

    /// There is no monitor, because the library does nothing in this process.
    void isInert();

    /// Ends the night now. The wall clock is not asked any more.
    void endNight();

    /// The night as the page's script takes it; docs/report.md describes it. Call it once, after
    /// `endNight`.
    Json finish(const NightSummary& summary);

private:
    double since(Date wall) const;
    void enter(const char* lane, const Json& value, Date at);
    void enterRadios(Date at);
    void enterState(const char* state, Date at);
    void follow(const Call& call);
    void followSound(const Call& call);
    void followPowerMessage(Date at, std::uint32_t type);
    Json applicationDeed(const char* verb, const Call& call) const;
    Json localTimes() const;

    const Scenario night;
    const std::function<Date()> now; ///< By the wall clock of the phone.
    std::ostream nowhere{nullptr};
    Story story;
    MorningCheck radios; ///< For their states only.
    WakeUps wakeUps;
    ElapsedTime elapsed;
    NightCycles cycles;

    /// The value of each lane over time: pairs of a time and a value, for each change.
    std::map<std::string, Json> lanes;
    Json settings = Json::array();
    Json tolerances = Json::array();
    Json idleSleeps = Json::array();
    Json refusals = Json::array();
    Json wakings = Json::array();
    Json cues = Json::array();
    Json applications = Json::array();
    Json lines = Json::array(); ///< Of the story.
    std::vector<std::string> remarks;
    std::vector<std::pair<double, double>>
        clockChanges; ///< When, and how far the wall clock jumps.

    double end = 0;
    const char* kindOfLine = "monitor";
    bool clockIsSet =
        false; ///< The story tells of a clock that is set; `now` still has the old time.
    bool inSleepState = false;
    bool suspended = false;
    bool askedToSleep = false;
    std::optional<double> idleSleepBegan;
    std::int64_t airplaneModeSound = 0;
    std::int64_t returnSound = 0;
};

} // namespace noctara
